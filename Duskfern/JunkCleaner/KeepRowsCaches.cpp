#include "JunkCleaner/KeepRows.h"

namespace {

// What these programs keep there is known from the files and texts of their packages and from what they write.
constexpr KeepRow cacheRows[] = {
    // Programs that use the cache folder for what exists only once.
    {"simple-scan", "pages scanned but not saved (autosave.book)"},
    {"mypaint", "the painting in progress (autosave)"},
    {"inkscape", "copies of drawings that were not saved, the default folder for them"},
    {"xournalpp", "notes that were not saved (autosaves)"},
    {"FreeCAD*", "recovery files of open models (fc_recovery_file.xml)"},
    {"flowblade", "the film in progress (autosave), rendered clips that projects use"},
    {"buzztrax", "what was changed in songs that were not saved"},
    {"gtranscribe", "where transcriptions were left off"},
    {"audacity|tenacity", "recordings that were not saved (SessionData)"},
    {"peek", "recordings that were not saved"},
    {"gummi", "copies of texts that were not saved"},
    {"nvim|vim", "undo history and swap files"},
    {"emacs", "unsaved edits"},
    {"kioexec", "remote documents that are open and not uploaded yet"},
    {"obexd", "files received over Bluetooth"},
    {"evolution", "mail that is not on the server"},
    {"zsh|bash|*_history|*-history|zhistory|*.history", "histories of shells, which many people keep here"},
    {"clipit|cliphist|clipmenu*|greenclip*|clipboard-indicator*", "clipboard histories"},
    {"keepass*|rbw", "a password database's state"},
    {"huggingface", "log-in tokens and models"},
    {"ncspot|spotifyd|spotify-player|librespot", "log-in tokens (credentials.json)"},
    {"google-vscode-extension|krb5*|keyring-*", "log-in tokens and keys"},
    {"lm-studio", "models, conversations and settings"},
    {"rclone|onedriver|google-drive-ocamlfuse", "files not yet uploaded, log-in tokens"},
    {"*.kdbx|*.swp|*.autosave", "the only copy of something"},
    {"autosave*|recovery|drafts|unsaved", "the only copy of something"},
    // Programs whose cache folder holds what is in use.
    {"pypoetry", "virtual environments in use"},
    {"JetBrains", "Local History, the only copy of unsaved work"},
    {"Google", "Android Studio's Local History"},
    {"gnome-software", "downloads of updates about to be installed"},
    // The running desktop's.
    {"ibus*|fcitx*", "the running input method's, with learnt words"},
    {"doc", "mount point of the document portal"},
    {"kwin|plasma*|*.kcache|ksycoca*", "the running desktop's"},
    {"libvirt", "running virtual machines'"},
    {"tracker*|localsearch|tinysparql", "the running desktop's file index"},
    {"sessions|xfce4", "the saved session"},
    {"wallpaper|wal", "wallpapers, and the colours made from them"},
};

constexpr KeepRow temporaryRows[] = {
    {"systemd-private-*", "a running service's"},
    {"snap-private-tmp|snap.*", "running snaps'"},
    {"ssh-*|gpg-*|keyring-*", "a running agent's socket"},
    {"dbus-*|pulse-*|runtime-*|emacs*", "sockets of the session"},
    {"tmux-*|screens|uscreens|byobu-*|zellij-*", "running terminals' sockets"},
    {"hsperfdata_*", "running Java programs'"},
    {"xauth_*|krb5cc*|x509up_*", "access keys and log-in tickets"},
    {"lu*.tmp|OSL_PIPE_*", "an open office document's"},
    {"mozilla_*|Temp-*", "a running browser's"},
    {"kde-*|ksocket-*|kdecache-*", "the running desktop's"},
    {"podman-run-*|containers-user-*|storage-run-*|vmware-*", "running containers' and machines'"},
    {"audacity-*|tenacity-*", "recordings that were not saved"},
    {"gscan2pdf-*", "pages scanned but not saved"},
    {"wireshark_*", "captures that were not saved"},
    {"rMD-session-*|kazam_*|vokoscreen*", "recordings that were not saved"},
    {"*_autosave.blend|quit.blend", "models that were not saved"},
    {"*.swp|*.swo|*.autosave|*.save|#*#|vi.recover", "unsaved edits"},
    {"crontab.*|mutt-*|neomutt-*|pico.*", "texts that are being written"},
    {"kioexec*|ark-*|calibre_*", "open documents that are to be put back"},
    {"Rtmp*", "the workspace of a running calculation"},
};

}  // namespace

std::span<const KeepRow> cacheKeepRows() {
    return cacheRows;
}

std::span<const KeepRow> temporaryKeepRows() {
    return temporaryRows;
}
