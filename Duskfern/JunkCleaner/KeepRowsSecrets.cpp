#include "JunkCleaner/KeepRows.h"

namespace {

constexpr KeepRow rows[] = {
    {"keyrings|kwalletd*|kwalletrc|gnome-keyring|secrets|Seahorse|ksecrets*", "passwords of the desktop"},
    {"keepass*|KeeWeb|MacPass|password-store|gopass|passage|tessen|qtpass|IJHack", "password stores"},
    {"Bitwarden*|bw|rbw|vaultwarden|goldwarden|1Password*|lpass|LastPass*|dashlane*|enpass*|Sinew*|buttercup*",
     "password stores"},
    {"NordPass|RoboForm|Passky|Padloc|passbolt*|protonpass*|Proton Pass|proton-pass|Psono|kpcli", "password stores"},
    {"password-gorilla|pwsafe*|passwordsafe|gnome-passwordsafe|gnome-secrets|World.Secrets|revelation|gpass",
     "password stores"},
    {"PasswordSafe|ripasso|Secrets|keysmith*|kwalletmanager*|SafeInCloud|authpass", "password stores"},
    {"Authy*|authenticator*|otpclient*|ente*|raivo|aegis|numberstation|oathtool|pyotp", "one-time codes"},
    {"yubico*|yubikey*|nitrokey*|pam-u2f|pam_u2f|u2f|fido*|onlykey*|trezor*|ledger*", "keys on devices"},
    {"gnupg|ssh|pki|nss|nssdb|sequoia*|openssh|pkcs11|p11-kit|certificates|mkcert|letsencrypt", "keys"},
    {"kleopatra*|gpa|gcr*|signify|minisign|tomb|VeraCrypt|TrueCrypt|cryptomator|siri*|gocryptfs|encfs*|"
     "plasma-vault|Vaults",
     "keys and vaults"},
    {"cryfs|zulu*|ecryptfs|fscrypt|luks*|picocrypt*", "keys and vaults"},
    {"Bitcoin*|electr*|monero*|feather|FeatherWallet|Exodus|atomic*|sparrow*|wasabi*|WalletWasabi", "wallets"},
    {"Armory|Litecoin|Dogecoin|Dash|DashCore|Zcash*|zecwallet*|Ethereum*|Parity|io.parity*|openethereum|"
     "Nethermind|lighthouse|prysm",
     "wallets"},
    {"Guarda|jaxx*|Coinomi|MyCrypto|MyEtherWallet|daedalus*|Yoroi|solana|Keplr|polkadot*|Rabby|blockstream*|"
     "GreenAddress|specter*",
     "wallets"},
    {"lnd|clightning|lightning|ThunderHub|BlueWallet|bisq*|haveno*|RoboSats|samourai*|nunchuk*|liana*|chia*|"
     "kaspa*|IOTA|firefly*|Decred|decrediton|Peercoin|Namecoin|Vertcoin|Ravencoin",
     "wallets"},
    {"gcloud|aws|azure*|doctl|hcloud|ibmcloud*|linode*|vultr*|flyctl|heroku|netlify|vercel*|com.vercel*|.wrangler|"
     "wrangler|scaleway|scw|openstack*|ovh*|exoscale",
     "log-in tokens of servers"},
    {"gh|glab*|bitbucket*|gitconfig*|git-credential*|GitHub Desktop|GitKraken|Sourcetree|github-copilot|jira*|"
     ".jira.d|acli|postman*|insomnia*|bruno|Hoppscotch*",
     "log-in tokens and requests"},
    {"kube|kubectl|k9s|Lens|OpenLens|argocd|teleport|tsh|vault|nomad|terraform*|pulumi|ansible*|chef|puppetlabs|"
     "boundary|tailscale*|zerotier*|netbird|cloudflared|ngrok",
     "log-in tokens of servers"},
    {"Proton*|mullvad*|nordvpn|expressvpn|surfshark*|windscribe*|eduVPN|openconnect*|AnyConnect|forticlient*|"
     "GlobalProtect|riseup*|bitmask*|calyx*",
     "log-in tokens of networks"},
    {"rclone|restic|resticprofile|autorestic|borg*|vorta|duplic*|deja-dup|dejadup|kopia|backintime*|timeshift|"
     "attic|tarsnap|crashplan|SpiderOak*|backblaze*|Pika*|grsync|luckybackup|kup|kuprc|urbackup*",
     "keys to backups"},
    {"Nextcloud*|ownCloud*|ubuntuone*|syncthing*|Martchus|Resilio*|rslsync|dropbox*|maestral|pcloud*|MEGA*|Insync*|"
     "onedrive*",
     "sync folders and their tokens"},
    {"seafile*|ccnet|seadrive*|Tresorit|SyncTrazor|unison|git-annex|lsyncd|odrive|overGrive|grive*|google-drive*|"
     "Koofr|Filen*|Internxt*|Icedrive|jotta*|ipfs*|celeste|kio-gdrive|sparkleshare|SyncBack*|cernbox*|KDrive|"
     "Infomaniak*",
     "sync folders and their tokens"},
    {"remmina|vinagre|krdc*|freerdp|anydesk|teamviewer*|rustdesk|x2go*|nomachine|realvnc*|tigervnc|vnc|xpra|"
     "moonlight*|parsec*|chrome-remote-desktop|guacamole|dwagent|weron|barrier|input-leap|Deskflow|synergy*",
     "credentials of other machines"},
    {"putty|asbru*|mobaxterm*|termius*|SecureCRT|Snowflake|tabby|electerm|WindTerm|filezilla|winscp|gftp|ncftp|"
     "lftp|cyberduck*|muon*|sshuttle|ssht",
     "credentials of other machines"},
    {"kdeconnect*|gsconnect|warpinator*|localsend*|scrcpy|adb|android|valent", "keys of other devices"},
    {"ledgerlive*|Ledger Live|DigiByte|Unstoppable|AutoFirma|configuradorfnmt|fnmt*|eID*|beid|openeid|OpenSC|"
     "Cl@ve|clave|DNIe*",
     "certificates of the person"},
    {"pass|op|age|geth|Mist|Phantom", "password stores, keys and wallets"},
};

}  // namespace

std::span<const KeepRow> secretKeepRows() {
    return rows;
}
