#include "Shell/DuskfernApp.h"

#include "FolderBrowser/FolderBrowser.h"
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

#include <system_error>

Q_IMPORT_QML_PLUGIN(Duskfern_EnginePlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_FolderBrowserPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_JunkCleanerPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_ShellPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_SpaceMapPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_StorageOverviewPlugin)
Q_IMPORT_QML_PLUGIN(Duskfern_ThemePlugin)

namespace {

std::jthread lookForFonts() {
    try {
        return std::jthread([] { (void)QFontDatabase::families(); });
    } catch (const std::system_error&) {
        return {};
    }
}

}  // namespace

void DuskfernApp::prepareProcess() {
    QGuiApplication::setApplicationName(QStringLiteral("Duskfern"));
    QGuiApplication::setApplicationVersion(QStringLiteral("2.1"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.duskfern.Duskfern"));
    if (QLocale().language() == QLocale::C) {
        QLocale::setDefault(QLocale(QStringLiteral("es_ES")));
    }
}

DuskfernApp::DuskfernApp(const Services& services, QObject* parent)
    : QObject(parent),
      m_fonts(lookForFonts()),
      m_colorScheme(services.colorScheme),
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
    installSpanish();
    m_window = m_engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
    if (m_window == nullptr) {
        qFatal("the window could not be made");
    }
    m_dialogs.setWindow(m_window);
    connect(&m_colorScheme, &ColorScheme::preferenceChanged, this, &DuskfernApp::followColorScheme);
    qGuiApp->installEventFilter(this);
    followColorScheme();
    // The icon is drawn in several sizes, which can wait until the window is there.
    connect(
        m_window, &QQuickWindow::frameSwapped, this,
        [] { QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/assets/AppIcon21.svg"))); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

DuskfernApp::~DuskfernApp() = default;

/// Every text is Spanish, whatever the locale. The engine installs the catalogue of the locale when it loads the first
/// file; the one installed last comes first.
void DuskfernApp::installSpanish() {
    if (m_spanish.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&m_spanish);
    }
}

void DuskfernApp::show() {
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

bool DuskfernApp::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        followColorScheme();
    }
    return QObject::eventFilter(watched, event);
}

/// Where the desktop states no preference its palette tells: dark means text lighter than what is behind it.
void DuskfernApp::followColorScheme() {
    const QPalette palette = QGuiApplication::palette();
    const bool darkPalette =
        palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
    const ColorScheme::Preference preference = m_colorScheme.preference();
    const bool dark =
        preference == ColorScheme::Preference::none ? darkPalette : preference == ColorScheme::Preference::dark;
    m_window->setProperty("dark", dark);
}
