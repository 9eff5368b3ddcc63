#include "JunkCleaner/KeepRows.h"

namespace {

constexpr KeepRow rows[] = {
    {"emacs*|doom|spacemacs|nvim*|vim*|neovim*|lvim|lunarvim|NvChad|AstroNvim|helix|kakoune|kak|micro",
     "unsaved edits, undo history"},
    {"Code*|VSCodium*|VSCode*|Cursor|Windsurf|Trae|Positron|Antigravity|zed|lapce*|sublime*|Atom|pulsar|Brackets|"
     "Nova|Komodo*",
     "unsaved edits"},
    {"stalefiles|notepadqq|NotepadNext|Notepad++|notepad-*|lite-xl",
     "sessions and unsaved texts, where the editor keeps them"},
    {"JetBrains*|Google|AndroidStudio*|IdeaIC*|IntelliJ*|PyCharm*|CLion*|WebStorm*|Eclipse*|.eclipse|netbeans*|"
     "apache-netbeans|arduino*|.arduinoIDE|platformio|processing|thonny|spyder*|wing*|bluej|greenfoot|xcode*",
     "projects' settings and Local History"},
    {"stalefiles|autosave*|backup|backups|recovery|drafts|unsaved|sessions-backup", "the only copy of something"},
    {"containers|docker*|podman*|lxc|lxd|incus|nerdctl|containerd|buildkit|buildah|apptainer|singularity|waydroid|"
     "anbox|distrobox|toolbox|toolboxes|toolbx|rancher*|minikube|k3d|colima|orbstack|bubblejail",
     "containers"},
    {"libvirt|gnome-boxes|VirtualBox|vagrant*|multipass*|vmware*|qemu*|aqemu|quickemu|quickgui|lima|proxmox*|"
     "cockpit|virt-manager|virt-viewer|genymobile|genymotion|firecracker",
     "virtual machines"},
    {"pipx|pip|uv|pyenv|rye|hatch|conda*|mamba*|micromamba|pixi|virtualenv*|pypoetry|pipenv|pdm|poetry|jupyter*|"
     "ipython|octave|rstudio|julia|sage|scilab*|maxima|wxmaxima|cantor|spss|gretl|jamovi|JASP|orange|KNIME|weka",
     "installed languages, environments and workspaces"},
    {"cargo|rustup|gopath|composer|pnpm|npm|yarn|bun|deno|nodejs|nvm|fnm|volta|corepack|gem|ruby|rbenv|rvm|"
     "bundle*|luarocks|opam|ghcup|stack|cabal|cabal-*|nix|nixpkgs|guix|hex|mix|rebar3|elixir|erlang|kerl|racket|"
     "sbcl|quicklisp|common-lisp|roswell|clojure|leiningen|lein|sdkman|jbang|coursier|sbt|scala*|ivy2|maven|"
     "gradle|kotlin|swift*|dart*|flutter*|pub-cache|dotnet|NuGet|powershell|perl*|cpan*|php|zig|zls|nim|nimble|"
     "choosenim|crystal|vlang|odin|Haxe|haxelib|vcpkg|conan*|ccache|sccache",
     "installed languages and packages"},
    {"mise|asdf|rtx|aqua|aquaproj*|hermit|proto|devbox|devenv|homebrew|brew|linuxbrew|pkgx|soar|appman|"
     "zap-appimage|bin|lib|lib64|pkgconfig|bash-completion|zsh-completions|completions|gettext",
     "what the user installed"},
    {"postgres*|pgsql|pgadmin*|pgcli|psql*|mysql*|mycli|mariadb*|mongodb*|mongosh|Robo*|redis*|AnotherRedis*|"
     "dbeaver*|dbgate*|beekeeper*|tableplus|sqlite*|litecli|sqlectron|sqldeveloper|Oracle|influx*|neo4j*|couchdb|"
     "elasticsearch|meilisearch|duckdb|clickhouse|cassandra|minio|grafana|prometheus|jackcess|libreoffice-base|"
     "kexi*",
     "databases and queries"},
    {"nitter|monero-gui|rclone-browser|RcloneBrowser|baresip|asterisk|gqrx|gnuradio|sdrangel|sdrpp|SDR++|CubicSDR|"
     "wsjtx|WSJT-X|JTDX|fldigi|flrig|cqrlog|hamlib|chirp|Xastir|gpredict|dump1090|js8call|klog|xlog|qlog",
     "logs and settings of radio"},
    {"go|node|python|Python|R|rust|lua", "installed languages"},
};

}  // namespace

std::span<const KeepRow> programKeepRows() {
    return rows;
}
