// What is seen rather than done: colours, symbols, bubbles, the places of panes.

#include "FolderBrowser/FolderPlace.h"
#include "Shell/Renderer.h"
#include "Shell/WindowDialogs.h"
#include "SpaceMap/BubbleMapCanvas.h"
#include "StorageOverview/StorageCategory.h"
#include "Theme/Contrast.h"
#include "Theme/SymbolProvider.h"
#include "support/Journey.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtQml/QQmlComponent>
#include <QtTest/QSignalSpy>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

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

/// Where the drawn part of a busy progress bar begins, seen for a while.
std::set<qreal> placesOf(const QQuickItem& bar) {
    std::set<qreal> places;
    for (int i = 0; i < 6; ++i) {
        places.insert(bar.childItems().constFirst()->x());
        QTest::qWait(50);
    }
    return places;
}

TEST_F(LookJourney, AProgressBarStandsStillForThoseWhoAskForLessMotion) {
    const auto bar = itemOf(app.engine(), R"(import Duskfern.Theme
        ProgressBar { width: 100; height: 6 })");
    EXPECT_GT(placesOf(*bar).size(), 2U);
    appearance.reduceMotion(true);
    EXPECT_EQ(placesOf(*bar), std::set<qreal>{36}) << "in the middle";
    appearance.reduceMotion(false);
    EXPECT_GT(placesOf(*bar).size(), 2U);
    bar->setProperty("value", 0.5);
    EXPECT_EQ(placesOf(*bar), std::set<qreal>{0});
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

TEST(Renderer, IsLeftToTheUsersChoice) {
    const QByteArray before = qgetenv("QT_QUICK_BACKEND");
    for (const char* const name : {"QT_QUICK_BACKEND", "LIBGL_ALWAYS_SOFTWARE"}) {
        qunsetenv("QT_QUICK_BACKEND");
        EXPECT_FALSE(isRendererChosen());
        qputenv(name, "1");
        EXPECT_TRUE(isRendererChosen()) << name;
        qunsetenv(name);
    }
    if (!before.isNull()) {
        qputenv("QT_QUICK_BACKEND", before);
    }
}

TEST_F(LookJourney, TextsAndNumbersAreSpanishWhateverTheLocale) {
    EXPECT_EQ(QCoreApplication::translate("QShortcut", "Space").toStdString(), "Espacio");
    const QLocale spanish;
    for (const auto& [locale, expected] : {std::pair(QLocale::c(), QLocale(QStringLiteral("es_ES"))),
                                           std::pair(QLocale(QLocale::German), QLocale(QLocale::German))}) {
        QLocale::setDefault(locale);
        DuskfernApp::prepareProcess();
        EXPECT_EQ(QLocale(), expected) << "numbers are written as the user's country does";
    }
    QLocale::setDefault(spanish);
}

TEST(WindowDialogs, ShowOneQuestionAtATime) {
    FakeFolderChooser chooser;
    WindowDialogs dialogs(chooser);
    std::vector<std::string> log;
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
    EXPECT_EQ(log, (std::vector<std::string>{"two no", "no folder", "one yes"}));
    choose();
    confirm("three");
    EXPECT_EQ(log.back(), "three no");
    EXPECT_TRUE(dialogs.isOpen() && !dialogs.isConfirming());
    EXPECT_TRUE(waitUntil([&] { return !dialogs.isOpen(); })) << "there is no window to ask in";
    EXPECT_EQ(log.size(), 5U);
}

TEST(Symbols, AllHaveAPicture) {
    std::set<QString> names;
    for (const FileCategory category : FileCategories::allCases) {
        names.insert(FileCategories::icon(category));
    }
    for (const StorageKind kind : StorageKinds::allCases) {
        names.insert(StorageKinds::icon(kind));
    }
    for (const JunkKind kind : {JunkKind::cache, JunkKind::log, JunkKind::temporary, JunkKind::leftover}) {
        names.insert(JunkKinds::icon(kind));
    }
    UserFolderPaths folders;
    folders.home = FileURL("/h");
    int number = 0;
    for (auto* const own : {&folders.music, &folders.videos, &folders.pictures, &folders.documents, &folders.desktop,
                            &folders.downloads}) {
        *own = FileURL("/" + std::to_string(++number));
    }
    for (const FolderPlace& place : folderPlaces(folders, {FileURL("/disk")})) {
        names.insert(place.symbol);
    }
    const QRegularExpression property(QStringLiteral(R"x((?<![.\w])(?:symbols?|icon|name): (.*"))x"));
    const QRegularExpression literal(QStringLiteral(R"x("([^"]+)")x"));
    for (QDirIterator files(QStringLiteral(":/qt/qml/Duskfern"), {QStringLiteral("*.qml")}, QDir::Files,
                            QDirIterator::Subdirectories);
         files.hasNext();) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        for (auto lines = property.globalMatch(QString::fromUtf8(file.readAll())); lines.hasNext();) {
            for (auto words = literal.globalMatch(lines.next().captured(1)); words.hasNext();) {
                names.insert(words.next().captured(1));
            }
        }
    }
    EXPECT_GT(names.size(), 35U);
    for (const QString& name : names) {
        const QImage image = SymbolProvider::image(name, Qt::red, 16);
        EXPECT_EQ(image.cacheKey(), SymbolProvider::image(name, Qt::red, 16).cacheKey()) << "drawn once";
        EXPECT_NE(image, SymbolProvider::image(name, Qt::blue, 16)) << qPrintable(name);
        EXPECT_FALSE(image.isNull() || image == SymbolProvider::image(name, Qt::transparent, 16)) << qPrintable(name);
    }
}

class BubbleMap : public testing::Test {
protected:
    /// What the map of one file of this name paints, or with others of the same size that lie above it.
    QImage paint(const std::string& name, const QSize& area, int others = 0) {
        TemporaryFolder tree;
        tree.file(name, 2 * 4096);
        for (int i = 0; i < others; ++i) {
            tree.file("o" + std::to_string(i), 4096);
        }
        store.setRootURL(tree.url());
        store.startScan();
        EXPECT_TRUE(waitUntil([&] { return !store.isScanning(); }));
        model.setArea(area);
        canvas.setSize(area);
        return paintAgain();
    }
    QImage paintAgain() {
        const QSize area = canvas.size().toSize();
        QImage image(area, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        canvas.paint(&painter);
        return image;
    }

    void SetUp() override {
        QFont font;
        font.setPixelSize(14);
        for (const char* const property : {"bodyFont", "sizeFont"}) {
            canvas.setProperty(property, font);
        }
        canvas.setProperty("background", QColor(Qt::transparent));
        canvas.setProperty("from", QColor(Qt::red));
        canvas.setProperty("to", QColor(Qt::red));
        model.setStore(&store);
        canvas.setModel(&model);
    }

    FakeDialogs dialogs;
    FakeTrash trash;
    FakeFileManager fileManager;
    ScanStore store{dialogs, trash, fileManager};
    BubbleMapModel model;
    BubbleMapCanvas canvas;
};

TEST_F(BubbleMap, WhatIsPaintedIsWhatCanBeHit) {
    const QImage image = paint("a", {400, 300});
    const Bubble bubble = model.bubbles().front();
    EXPECT_DOUBLE_EQ(bubble.diameter, 136);
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

TEST_F(BubbleMap, ColoursRunAcrossABubble) {
    canvas.setProperty("to", QColor(Qt::blue));
    const QImage image = paint("a", {400, 300});
    const Bubble bubble = model.bubbles().front();
    // From the top left of the square around the bubble to its bottom right. The middle has a symbol and a text.
    for (const double place : {-0.3, -0.2, 0.2, 0.3}) {
        const QColor color =
            image.pixelColor(qRound(bubble.x + place * bubble.diameter), qRound(bubble.y + place * bubble.diameter));
        EXPECT_NEAR(color.blueF(), 0.5 + place, 0.02) << place;
        EXPECT_NEAR(color.redF(), 0.5 - place, 0.02) << place;
        EXPECT_EQ(color.alpha(), 255) << place;
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
    std::vector<QImage> covered;
    std::vector<QImage> hovered;
    std::vector<QImage> focused;
    for (const char* const name : {"iiii.mov", "wwww.zip"}) {
        covered.push_back(paint(name, {800, 200}, 13));
        canvas.setProperty("hovered", 0);
        hovered.push_back(paintAgain());
        canvas.setProperty("hovered", -1);
        canvas.setProperty("focused", 0);
        focused.push_back(paintAgain());
        canvas.setProperty("focused", -1);
    }
    EXPECT_EQ(covered[0], covered[1]);
    EXPECT_NE(hovered[0], hovered[1]);
    EXPECT_NE(focused[0], focused[1]);
    EXPECT_NE(covered[0], focused[0]);
}

TEST_F(BubbleMap, WhiteTextStandsOutOnItsShade) {
    for (const char* const color : {"#F230B0C7", "#D1AF52DE", "#F240C8E0", "#D1BF5AF2"}) {
        canvas.setProperty("from", QColor(color));
        canvas.setProperty("to", QColor(color));
        canvas.setProperty("background", QColor(Qt::white));
        const QImage image = paint("aaaaaaaa", {250, 300});  // Without a name: symbol and size.
        const Bubble bubble = model.bubbles().front();
        std::map<QRgb, int> colors;
        for (int x = -14; x <= 14; ++x) {
            for (int y = 4; y <= 14; ++y) {
                ++colors[image.pixel(static_cast<int>(bubble.x) + x, static_cast<int>(bubble.y) + y)];
            }
        }
        const auto behind = std::max_element(colors.begin(), colors.end(),
                                             [](const auto& a, const auto& b) { return a.second < b.second; });
        EXPECT_GE(contrast(Qt::white, QColor(behind->first)), 4.5) << color;
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
