#include "Shell/DuskfernApp.h"

#include "FolderBrowser/FolderBrowser.h"
#include "Shell/Renderer.h"
#include "Theme/AccessibleItem.h"
#include "Theme/SymbolProvider.h"

#include <QtCore/QEvent>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>
#include <QtGui/QIcon>
#include <QtGui/QPalette>
#include <QtGui/QStyleHints>
#include <QtQml/QQmlExtensionPlugin>

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

Q_IMPORT_QML_PLUGIN(Duskfern_EnginePlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_FolderBrowserPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_JunkCleanerPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_ShellPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_SpaceMapPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_StorageOverviewPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_ThemePlugin)

namespace {

std::jthread loadFonts() {
    try {
        return std::jthread([] { (void)QFontDatabase::families(); });
    } catch (const std::system_error&) {
        return {};
    }
}

}  // namespace

void DuskfernApp::prepareProcess() {
    chooseRenderer();
    QGuiApplication::setApplicationName(QStringLiteral("Duskfern"));
    QGuiApplication::setApplicationVersion(QStringLiteral("2.1"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.duskfern.Duskfern"));
    if (QLocale().language() == QLocale::C) {
        QLocale::setDefault(QLocale(QStringLiteral("es_ES")));
    }
}

DuskfernApp::DuskfernApp(const Services& services, QObject* parent)
    : QObject(parent),
      m_fonts(loadFonts()),
      m_appearance(services.appearance),
      m_dialogs(services.folderChooser),
      m_store(m_dialogs, services.trash, services.fileManager),
      m_screens(m_store,
                {services.mountedVolumes,
                 {m_dialogs, services.trash, services.fileManager, services.userFolders, services.applications}}) {
    installAccessibleItems();
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(QLatin1String(SymbolProvider::name), new SymbolProvider);
    m_engine.setInitialProperties({
        {QStringLiteral("store"), QVariant::fromValue(&m_store)},
        {QStringLiteral("screens"), QVariant::fromValue(&m_screens)},
        {QStringLiteral("dialogs"), QVariant::fromValue(&m_dialogs)},
        {QStringLiteral("folderBrowser"), QVariant::fromValue(&services.folderBrowser)},
    });
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Duskfern/Shell/MainWindow.qml")));
    installTranslation();
    m_window = m_engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
    if (m_window == nullptr) {
        qFatal("the window could not be made");
    }
    m_dialogs.setWindow(m_window);
    connect(&m_appearance, &Appearance::preferenceChanged, this, &DuskfernApp::applyAppearance);
    connect(&m_appearance, &Appearance::reducesMotionChanged, this, &DuskfernApp::applyWishes);
    connect(&m_appearance, &Appearance::raisesContrastChanged, this, &DuskfernApp::applyWishes);
    connect(&m_appearance, &Appearance::accentChanged, this, &DuskfernApp::applyWishes);
    qGuiApp->installEventFilter(this);
    applyAppearance();
    applyWishes();
    // Drawing the icon in several sizes takes time, so it waits for the first frame.
    connect(
        m_window, &QQuickWindow::frameSwapped, this,
        [] { QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/assets/AppIcon21.svg"))); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

DuskfernApp::~DuskfernApp() = default;

/// Qt's own texts in Spanish, whatever the locale. Called after the QML engine has loaded its first file: the engine
/// then installs the catalogue of the locale, and the last one installed is searched first.
void DuskfernApp::installTranslation() {
    if (m_spanish.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&m_spanish);
    }
}

void DuskfernApp::show() {
    m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

void DuskfernApp::showScreen(const QString& screen, const QString& token) {
    if (!token.isEmpty()) {
        // Where Qt looks for the permission to come to the front, on Wayland.
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    show();
    static constexpr std::pair<QLatin1String, ScanStore::Mode> screens[] = {
        {QLatin1String("home"), ScanStore::Mode::home},
        {QLatin1String("space"), ScanStore::Mode::space},
        {QLatin1String("junk"), ScanStore::Mode::junk},
    };
    const auto* const found =
        std::find_if(std::begin(screens), std::end(screens), [&](const auto& row) { return row.first == screen; });
    // A question stands before the screen that it is about.
    if (found != std::end(screens) && !m_window->property("blocked").toBool()) {
        m_store.setMode(found->second);
    }
}

bool DuskfernApp::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        applyAppearance();
    }
    return QObject::eventFilter(watched, event);
}

/// Applies the colour preference. Without one the palette decides: dark if text is lighter than its background.
void DuskfernApp::applyAppearance() {
    const QPalette palette = QGuiApplication::palette();
    const bool darkPalette =
        palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
    const Appearance::Preference preference = m_appearance.preference();
    const bool dark =
        preference == Appearance::Preference::none ? darkPalette : preference == Appearance::Preference::dark;
    m_window->setProperty("dark", dark);
}

void DuskfernApp::applyWishes() {
    m_window->setProperty("reducesMotion", m_appearance.reducesMotion());
    m_window->setProperty("raisesContrast", m_appearance.raisesContrast());
    const std::optional<Appearance::Accent> accent = m_appearance.accent();
    m_window->setProperty("accent",
                          accent ? QColor::fromRgbF(static_cast<float>(accent->red), static_cast<float>(accent->green),
                                                    static_cast<float>(accent->blue))
                                 : QColor(Qt::transparent));
}
