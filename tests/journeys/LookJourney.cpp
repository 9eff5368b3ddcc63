// What is seen rather than done: colours, symbols, bubbles, the places of panes.

#include "FolderBrowser/FolderPlace.h"
#include "Shell/Renderer.h"
#include "Shell/WindowDialogs.h"
#include "SpaceMap/BubbleMapCanvas.h"
#include "SpaceScan/ScanFixture.h"
#include "Theme/Contrast.h"
#include "Theme/SymbolProvider.h"
#include "support/Journey.h"

#include <QtCore/QDirIterator>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtQml/QQmlComponent>
#include <QtTest/QSignalSpy>

#include <cmath>
#include <filesystem>
#include <functional>

namespace {

using LookJourney = Journey<FakeTrash>;

/// An item of QML text.
std::unique_ptr<QQuickItem> itemOf(QQmlEngine& engine, const char* text) {
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine);
    component.setData(text, {});
    auto* const item = qobject_cast<QQuickItem*>(component.create());
    EXPECT_NE(item, nullptr) << qPrintable(component.errorString());
    return std::unique_ptr<QQuickItem>(item);
}

QColor over(const QColor& below, const QColor& above) {
    const auto mix = [&](float b, float a) { return b * (1 - above.alphaF()) + a * above.alphaF(); };
    return QColor::fromRgbF(mix(below.redF(), above.redF()), mix(below.greenF(), above.greenF()),
                            mix(below.blueF(), above.blueF()));
}

/// Looks at the texts and rings of the theme as it is now.
void expectColorsStandOut(const QObject& theme, bool strong) {
    const auto color = [&](const char* name) { return theme.property(name).value<QColor>(); };
    const auto expect = [&](const char* above, double least, std::initializer_list<QColor> surfaces) {
        for (const QColor& surface : surfaces) {
            EXPECT_GE(contrast(color(above), surface), least) << above << " on " << qPrintable(surface.name());
        }
    };
    const QColor window = color("window");
    QColor shade = color("primary");
    shade.setAlphaF(0.14F);  // A card, and a row or button on it that is pressed.
    const QColor pressed = over(window, shade);
    const QColor selected = over(window, color("selection"));
    for (const char* const text : {"primary", "secondary"}) {
        expect(text, 4.5, {window, pressed, selected, color("sidebar"), over(color("raised"), color("selection"))});
    }
    if (strong) {
        expect("secondary", 7, {window});
        EXPECT_GE(contrast(over(window, color("divider")), window), 3);
    }
    expect("focus", 3, {window, pressed, selected, color("sidebar"), color("raised")});
    expect("redMark", 3, {window, pressed});
    expect("redText", 4.5, {window, pressed});
    expect("tealText", 4.5, {window, pressed, selected});
    expect("onTint", 4.5, {color("redFill"), color("accentFill")});
}

TEST_F(LookJourney, TheThemesColoursStandOut) {
    const auto holder = itemOf(app.engine(), R"(import QtQuick; import Duskfern.Theme
        Item { property QtObject theme: Theme })");
    const auto* const theme = holder->property("theme").value<QObject*>();
    using Accent = Appearance::Accent;
    const std::optional<Accent> accents[] = {std::nullopt,           Accent{0.2, 0.52, 0.89}, Accent{1, 0.84, 0.04},
                                             Accent{0.1, 0.08, 0.4}, Accent{0, 0, 0},         Accent{1, 1, 1}};
    for (const auto& accent : accents) {
        for (const bool strong : {false, true}) {
            appearance.wish(strong, accent);
            for (const auto preference : {Appearance::Preference::light, Appearance::Preference::dark}) {
                appearance.prefer(preference);
                expectColorsStandOut(*theme, strong);
            }
        }
    }
}

TEST_F(LookJourney, WithoutAPreferenceThePaletteTellsTheColours) {
    appearance.prefer(Appearance::Preference::none);
    const QPalette before = QGuiApplication::palette();
    for (const bool dark : {true, false}) {
        QGuiApplication::setPalette(dark ? QPalette(Qt::black) : QPalette(Qt::white));
        EXPECT_TRUE(waitUntil([&] { return (app.window().color().lightness() < 100) == dark; })) << dark;
        appearance.prefer(dark ? Appearance::Preference::light : Appearance::Preference::dark);
        EXPECT_NE(app.window().color().lightness() < 100, dark) << "a preference comes first";
        appearance.prefer(Appearance::Preference::none);
    }
    QGuiApplication::setPalette(before);
}

TEST_F(LookJourney, AProgressBarStandsStillForThoseWhoAskForLessMotion) {
    const auto bar = itemOf(app.engine(), "import Duskfern.Theme; ProgressBar { width: 100 }");
    const QSignalSpy moves(bar->childItems().constFirst(), &QQuickItem::xChanged);
    EXPECT_TRUE(waitUntil([&] { return moves.count() > 1; }));
    appearance.isStill = true;
    Q_EMIT appearance.reducesMotionChanged();
    const auto before = moves.count();
    QTest::qWait(200);
    EXPECT_EQ(moves.count(), before);
}

TEST(Renderer, IsQtsOwnWhereNoCardCanBeOpened) {
    const TemporaryFolder devices;
    devices.text("dri/card0", "");
    devices.folder("dri/renderD128");
    EXPECT_FALSE(hasGraphicsCard(devices.path())) << "a screen without a card, and one that cannot be opened";
    for (const char* const name : {"dri/renderD129", "nvidiactl", "dxg"}) {
        const TemporaryFolder others;
        others.folder("dri/renderD128");
        others.text(name, "");
        EXPECT_TRUE(hasGraphicsCard(others.path())) << name;
    }
}

TEST_F(LookJourney, TextsAndNumbersAreSpanishWithoutALocale) {
    EXPECT_EQ(QCoreApplication::translate("QShortcut", "Space").toStdString(), "Espacio");
    const QLocale spanish;
    QLocale::setDefault(QLocale::c());
    DuskfernApp::prepareProcess();
    EXPECT_EQ(QLocale(), QLocale(QStringLiteral("es_ES")));
    QLocale::setDefault(spanish);
}

/// Those that QML names, and those that come with data. One that is missing is seen only where it is shown.
TEST(Symbols, AllHaveAPicture) {
    QStringList names;
    const auto add = [&](const auto& things, auto symbolOf) {
        for (const auto& thing : things) {
            names << std::invoke(symbolOf, thing);
        }
    };
    add(FileCategories::allCases, &FileCategories::icon);
    add(StorageKinds::allCases, &StorageKinds::icon);
    add(JunkKinds::allCases, &JunkKinds::icon);
    UserFolderPaths folders;
    int number = 0;
    for (auto* const own : {&folders.music, &folders.videos, &folders.pictures, &folders.documents, &folders.desktop,
                            &folders.downloads}) {
        *own = FileURL(std::string("/").append(std::to_string(++number)));
    }
    add(folderPlaces(folders, {FileURL("/disk")}), &FolderPlace::symbol);
    const QRegularExpression property(QStringLiteral(R"x((?<![.\w])(?:symbols?|icon|name): (.*"))x"));
    for (QDirIterator files(QStringLiteral(":/qt/qml/Duskfern"), {QStringLiteral("*.qml")}, QDir::Files,
                            QDirIterator::Subdirectories);
         files.hasNext();) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        for (auto lines = property.globalMatch(QString::fromUtf8(file.readAll())); lines.hasNext();) {
            const QStringList pieces = lines.next().captured(1).split(u'"');
            for (qsizetype quoted = 1; quoted < pieces.size(); quoted += 2) {
                names << pieces[quoted];
            }
        }
    }
    names.removeAll({});
    EXPECT_GT(names.size(), 45);
    for (const QString& name : names) {
        EXPECT_FALSE(SymbolProvider::image(name, Qt::red, 16).isNull()) << qPrintable(name);
    }
}

TEST(WindowDialogs, ShowOneQuestionAtATime) {
    FakeFolderChooser chooser;
    WindowDialogs dialogs(chooser);
    Texts log;
    const auto confirm = [&](const char* name) {
        dialogs.confirm({QString::fromUtf8(name), {}, {}, {}},
                        [&log, name](bool yes) { log.push_back(name + std::string(yes ? " yes" : " no")); });
    };
    const auto choose = [&] {
        dialogs.chooseFolder({}, {}, [&](const std::optional<FileURL>&) { log.emplace_back("no folder"); });
    };
    confirm("one");
    confirm("two");
    choose();
    EXPECT_EQ(dialogs.message(), QStringLiteral("one"));
    dialogs.answer(true);
    dialogs.answer(true);
    EXPECT_EQ(log, (Texts{"two no", "no folder", "one yes"}));
    choose();
    confirm("three");
    EXPECT_EQ(log.back(), "three no");
    EXPECT_TRUE(dialogs.isOpen() && !dialogs.isConfirming());
    EXPECT_TRUE(waitUntil([&] { return !dialogs.isOpen(); })) << "there is no window to ask in";
    EXPECT_EQ(log.size(), 5U);
}

class BubbleMap : public StoreFixture {
protected:
    /// What the map of one file of this name paints, or with others of the same size that lie above it, unless this
    /// property of the map raises it.
    QImage paint(const std::string& name, const QSize& area, int others = 0, const char* raising = "nothing") {
        std::filesystem::remove_all(tree.path("map"));
        tree.file("map/" + name, 2 * 4096);
        for (int i = 0; i < others; ++i) {
            tree.file("map/" + std::to_string(i), 4096);
        }
        scanAndWait();
        model.setArea(area);
        canvas.setSize(area);
        canvas.setProperty(raising, 0);
        QImage image(area, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        canvas.paint(&painter);
        canvas.setProperty(raising, -1);
        return image;
    }

    void SetUp() override {
        QFont font;
        font.setPixelSize(14);
        for (const char* const property : {"bodyFont", "sizeFont"}) {
            canvas.setProperty(property, font);
        }
        canvas.setProperty("background", QColor(Qt::transparent));
        model.setStore(&store);
        canvas.setModel(&model);
    }

    BubbleMapModel model;
    BubbleMapCanvas canvas;
};

TEST_F(BubbleMap, WhatIsPaintedIsWhatCanBeHit) {
    const QImage image = paint("a", {400, 300});
    const Bubble bubble = model.bubbles().front();
    QQmlEngine engine;
    const auto button = itemOf(engine, R"(import Duskfern.SpaceMap
        BubbleButton { index: 0; centerX: 200; centerY: 150; diameter: 136; name: ""; sizeText: ""; path: "" })");
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3) {
            const double distance = std::hypot(x + 0.5 - bubble.x, y + 0.5 - bubble.y);
            if (std::abs(distance - bubble.diameter / 2) > 1.5) {
                const bool isInside = distance < bubble.diameter / 2;
                EXPECT_EQ(qAlpha(image.pixel(x, y)) > 0, isInside) << x << ' ' << y;
                EXPECT_EQ(button->contains(button->mapFromScene({x + 0.5, y + 0.5})), isInside) << x << ' ' << y;
            }
        }
    }
}

TEST_F(BubbleMap, NamesStandInBubblesOverTheirLeastDiameterOnly) {
    for (const auto& [width, isNamed] : {std::pair(250, false), std::pair(251, true)}) {
        const QImage one = paint("iiii", {width, 300});
        EXPECT_EQ(model.bubbles().front().diameter > namedBubbleDiameter, isNamed);
        EXPECT_NE(one == paint("wwww", {width, 300}), isNamed) << width;
    }
}

TEST_F(BubbleMap, WhatABubbleCoversIsNotPaintedUntilItIsRaised) {
    // The name and the symbol of the lowest bubble, under thirteen others.
    const QSize area(800, 200);
    EXPECT_EQ(paint("iiii.mov", area, 13), paint("wwww.zip", area, 13));
    for (const char* const raising : {"hovered", "focused"}) {
        EXPECT_NE(paint("iiii.mov", area, 13, raising), paint("wwww.zip", area, 13, raising)) << raising;
    }
}

TEST_F(BubbleMap, WhiteTextStandsOutOnItsShade) {
    canvas.setProperty("background", QColor(Qt::white));
    for (const char* const color : {"#F230B0C7", "#D1AF52DE", "#F240C8E0", "#D1BF5AF2"}) {
        canvas.setProperty("from", QColor(color));
        canvas.setProperty("to", QColor(color));
        const QImage image = paint("aaaaaaaa", {250, 300});  // Without a name: symbol and size.
        const Bubble bubble = model.bubbles().front();
        const QRect text(qRound(bubble.x) - 14, qRound(bubble.y) + 4, 29, 11);
        EXPECT_GE(contrast(Qt::white, groundOf(image, text)), 4.5) << color;
    }
}

TEST_F(BubbleMap, FollowsItsArea) {
    (void)paint("a", {400, 300});
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setArea({200, 100});
    EXPECT_EQ(model.bubbles().front(), (Bubble{100, 50, 68}));
    EXPECT_EQ(changes.count(), 1) << "and those who show it are told";
}

}  // namespace
