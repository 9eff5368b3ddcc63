#include "JunkCleaner/KeepRows.h"

namespace {

constexpr KeepRow rows[] = {
    {"mozilla*|firefox*|librewolf*|waterfox*|palemoon*|moonchild productions|floorp*|zen|zen-browser|icecat|"
     "seamonkey|basilisk|mullvadbrowser|torbrowser|tor-browser*|Tor Browser",
     "browser profiles"},
    {"google-chrome*|Chrome|chromium|ungoogled*|Brave*|microsoft-edge*|Edge|vivaldi*|Opera*|Yandex*|thorium|"
     "iridium|slimjet|cromite",
     "browser profiles"},
    {"epiphany*|falkon|konqueror|midori|qutebrowser|luakit|nyxt|dillo|vieb|eolie|badwolf|angelfish|dooble|lynx|"
     "w3m|elinks|Bazaar",
     "browser profiles"},
    {"thunderbird*|betterbird*|evolution*|geary|kmail*|kontact*|local-mail|mail|Maildir|akonadi*|pim*|"
     "emaildefaults|emailidentities|mailtransports|claws-mail|sylpheed*|balsa|trojita*",
     "mail"},
    {"mutt|neomutt|alpine|pine|aerc|himalaya|meli|astroid|mu|mu4e|neverest|Mailspring|BlueMail|Hiri|nylas*|"
     "wavebox*|Tuta*|protonmail-bridge*|hydroxide|prospect-mail|Posteo|mailnag",
     "mail"},
    {"Signal*|telegram*|64Gram*|kotatogram*|Element*|Riot|discord*|Vencord*|vesktop|WebCord|ArmCord|legcord|"
     "Slack*|Skype*|Microsoft Teams*|teams*|Zoom*",
     "conversations"},
    {"fractal|dino|gajim|poezio|Psi*|kaidan|swift-im|Swift|mcabber|profanity|purple|pidgin|finch|hexchat|xchat*|"
     "polari|quassel*|konversation*|kvirc*|weechat*|irssi|srain|halloy|senpai|catgirl|quaternion|Quotient|nheko|"
     "neochat*|spectral|SchildiChat*|cinny*|FluffyChat*|gomuks|iamb",
     "conversations"},
    {"tox|qTox|utox|toxic|session-desktop|jami*|linphone*|Ekiga|twinkle|mumble*|TeamSpeak*|ts3client|Wire|"
     "Threema*|Viber*|WhatsApp*|whatsdesk|ZapZap|Caprine|Messenger*|Franz|Ferdi*|Rambox|Keybase|mattermost*|"
     "Rocket.Chat|zulip*|briar*|Cwtch|SimpleX|Delta*|beeper*|KakaoTalk|WeChat|weixin|xwechat*|QQ|tencent*|"
     "Chatterino|chatty|spacebar|modem-manager-gui|tuba|tokodon|whalebird|mastodon*",
     "conversations"},
    {"contacts|vcards|addressbook*|kaddressbook*|folks|calendar*|korganizer*|kalarm*|kalendar*|merkuro*|"
     "gnome-calendar|california|orage*|osmo|minetime|rainlendar*|calcurse|remind|khal*|khard*|vdirsyncer|radicale|"
     "davx5*|errands|planify|Planner*|endeavour|gnome-todo|gtg|getting-things*|tasque|todo*|TickTick|AnyList|"
     "Superproductivity|super-productivity|Nozbe|taskwarrior|timewarrior|hamster*|kimai|Toggl*|zanshin*|"
     "ktimetracker*|clockify*|activitywatch",
     "calendars, contacts and tasks"},
    {"gnote|tomboy*|bijiben|gnome-notes|notes|notejot|iotas|folio|knotes*|kjots*|basket*|nobleNote|xpad|"
     "xfce4-notes*|sticky*|indicator-stickynotes|rednotebook|lifeograph|almanah|journal|jrnl|diary|diaryjournal|"
     "caderno|kylin-note*",
     "notes and diaries"},
    {"joplin*|obsidian|logseq|notion*|anytype*|appflowy*|Standard Notes|standardnotes*|simplenote*|evernote*|"
     "nixnote*|Boostnote|Trilium*|SiYuan|qownnotes*|PBE|zim|cherrytree|zettlr*|zkn*|Zettelkasten*|tiddly*|Turtl|"
     "notable|Notesnook|affine*|Heynote|Inkdrop|RemNote|Roam*|Typora|marktext|ghostwriter|focuswriter|GottCode|"
     "manuskript|novelwriter|bibisco|scrivener|KIT Scenarist|starc|trelby|wavemaker|yWriter*|OneNote|p3x-onenote|"
     "vnote|xmind*|freeplane|FreeMind|minder|vym|labyrinth|heimer",
     "notes and texts"},
    {"zotero|mendeley*|jabref*|kbibtex*|papis|docear*|bibdesk|paperpile|referencer|cobib|citavi", "references"},
    {"calibre*|foliate|com.github.johnfactotum*|bookworm|koreader|fbreader*|coolreader|cr3|readest|thorium-reader|"
     "EDRLab*|sigil-ebook|Kindle|komikku|yacreader*|bibletime*|xiphos|sword|ezra*|theword|alexandria",
     "books, and notes and places in them"},
    {"Anki*|mnemosyne*|memento|parley*|kwordquiz*|supermemo|ganki|klettres|GNOME-Flashcards", "cards and progress"},
    {"gnucash*|kmymoney*|homebank|skrooge*|grisbi|moneymanagerex|.mmex|mmex|firefly-iii|denaro|NickvisionMoney|"
     "buddi|jgnash|jmoney|hibiscus|jameica|Moneydance|ledger-cli|hledger*|beancount*|fava|eqonomize|kbudget|YNAB*|"
     "PortfolioPerformance|LibreTax*|Elster*|aeat|plom|invoiceninja",
     "accounts"},
    {"shotwell|digikam*|darktable|rawtherapee*|f-spot|solang|pantheon-photos|io.elementary.photos|Lightroom|"
     "Capture One|DxO*|rapid-photo-downloader|RapidRAW",
     "albums and edits"},
    {"steam*|lutris|heroic|legendary|bottles|wineprefixes|wine|winetricks|proton*|umu|PlayOnLinux*|crossover|itch|"
     "gog*|minigalaxy|gamehub|cartridges|nile|Epic|EpicGames|Ubisoft*|Battle.net|Rockstar*",
     "games and their saves"},
    {"unity3d|godot|love|renpy|UnrealEngine|GameMaker*|rpgmaker*|PrismLauncher|multimc|PolyMC|ATLauncher|gdlauncher*|"
     "minecraft*|.minecraft|technic|ftblauncher|lunarclient|badlion*|tlauncher|modrinth*|com.modrinth*|hmcl|"
     "mcpelauncher|minetest|luanti|veloren|vintagestory*|factorio|Terraria|StardewValley|Mindustry|osu|osu!|roblox|"
     "vinegar|sober",
     "worlds and saves"},
    {"retroarch|libretro|dolphin-emu|pcsx*|duckstation|rpcs3|ppsspp|citra*|azahar*|lime3ds*|yuzu|suyu|sudachi|"
     "eden|Ryujinx|cemu|vita3k|xemu|mgba|melonDS|desmume|mupen64plus|simple64|RMG|snes9x|bsnes|ares|higan|"
     "mednafen|mame|fceux|nestopia|punes|gambatte|sameboy|flycast|redream|reicast|yabause|kronos|stella|vice|"
     "fs-uae|hatari|dosbox*|scummvm|residualvm|86box|pcem|openmsx|blastem|emulationstation|ES-DE|EmuDeck|gearboy|"
     "openmw|openrct2|OpenRA|openloco|devilutionx|diasurgical|corsixth",
     "saves of games"},
    {"0ad|openttd|wesnoth|freeciv*|unciv|supertux*|warzone2100*|hedgewars|widelands|megaglest|glest|beyond*|"
     "freeorion|endless-sky|oolite|pioneer|naev|vegastrike|nethack*|crawl|angband|brogue*|cogmind|dwarffortress|"
     "Bay 12*|df_linux|cataclysm*|CDDA|t-engine|frozen-bubble*|frogatto|xonotic|teeworlds|ddnet|assaultcube|"
     "openarena|redeclipse|sauerbraten|cube2|armagetron*|torcs|speed-dreams|vdrift|flightgear|fgfs|X-Plane*|"
     "lincity*|simutrans|freecol|colobot|pingus|neverball|secretmaryo*|opentyrian|openxcom|fheroes2|vcmi|homm|"
     "stratagus|pysolfc|aisleriot|quadrapassel|swell-foop|kigo|knights|lskat|scid*|pychess|chessx|tenes*|"
     "gcompris*|tuxmath|kturtle|ktouch*",
     "saves and progress of games"},
    {"Paradox Interactive|Larian Studios|feral-interactive|Aspyr*|Virtual Programming|Colossal*|Introversion|Klei|"
     "ConcernedApe|Double Fine|SpaceEngineers|Kerbal*|Team Cherry|unknown-worlds|FasterThanLight|"
     "binding of isaac*|TheBindingOfIsaac|IsaacRebirth|SuperMeatBoy|HotlineMiami|Undertale|Celeste|celeste64|"
     "Hollow Knight|Cuphead|Bastion|Transistor|Supergiant*|Psychonauts|doublefine|3909|Zachtronics|RimWorld*|"
     "Ludeon*|Firaxis*|Civilization*|Dead Cells|SlayTheSpire|Into the Breach|ProjectZomboid|Zomboid|Subset Games|"
     "FTL|Mojang|Sid Meier*|saves|savegames|SavedGames|My Games",
     "saves of games"},
    {"gramps*|ancestris|webtrees|geneweb|familytree*|josm|merkaartor|QMapShack|viking|marble|maps-places.json|"
     "gnome-maps|stellarium|kstars|gpxsee|garmin*|GoldenCheetah|turtlesport|pytrainer|subsurface|fitotrack|"
     "openScale|health|gnome-health|gnuhealth",
     "family trees, journeys and health"},
    {"ollama*|lm-studio|LM Studio|LMStudio|gpt4all|nomic.ai|jan|Msty|AnythingLLM*|open-webui|alpaca|com.jeffser*|"
     "koboldcpp|text-generation*|llama.cpp|llamafile|stable-diffusion*|ComfyUI|InvokeAI|DiffusionBee|"
     "automatic1111|Draw Things|krita-ai-diffusion|whisper*|vosk|piper-voices|huggingface|claude*|chatgpt*|aichat|"
     "llm|io.datasette.llm|shell_gpt|cursor-tutor|chatbox*|Cherry Studio|CherryStudio*",
     "models and conversations"},
    {"org.gnome.SoundRecorder|gnome-sound-recorder|krecorder|recordings|screenshots|scans", "recordings and drawings"},
    {"Wire|Session|session-desktop|zoom|zoomus*|SimpleX", "conversations"},
    {"tome4|chessx", "saves of games"},
};

}  // namespace

std::span<const KeepRow> personalKeepRows() {
    return rows;
}
