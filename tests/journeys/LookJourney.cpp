// What is seen rather than done: colours, symbols, bubbles, the places of panes.

#include "FolderBrowser/FolderPlace.h"
#include "Shell/WindowDialogs.h"
#include "SpaceMap/BubbleMapCanvas.h"
#include "StorageOverview/StorageCategory.h"
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

#include <cmath>
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
    colorScheme.prefer(ColorScheme::Preference::none);
    const QPalette before = QGuiApplication::palette();
    for (const bool dark : {true, false}) {
        QGuiApplication::setPalette(dark ? QPalette(Qt::black) : QPalette(Qt::white));
        EXPECT_TRUE(waitUntil([&] { return (app.window().color().lightness() < 100) == dark; })) << dark;
        colorScheme.prefer(dark ? ColorScheme::Preference::light : ColorScheme::Preference::dark);
        EXPECT_NE(app.window().color().lightness() < 100, dark) << "a preference comes first";
        colorScheme.prefer(ColorScheme::Preference::none);
    }
    QGuiApplication::setPalette(before);
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
        EXPECT_FALSE(image.isNull() || image == SymbolProvider::image(name, Qt::transparent, 16)) << qPrintable(name);
    }
}

class BubbleMap : public testing::Test {
protected:
    /// What the map of one file of this name paints.
    QImage paint(const std::string& name, const QSize& area) {
        TemporaryFolder tree;
        tree.file(name, 4096);
        store.setRootURL(tree.url());
        store.startScan();
        EXPECT_TRUE(waitUntil([&] { return !store.isScanning(); }));
        model.setArea(area);
        canvas.setSize(area);
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

TEST_F(BubbleMap, NamesStandInBubblesOverTheirLeastDiameterOnly) {
    for (const auto& [width, isNamed] : {std::pair(250, false), std::pair(251, true)}) {
        const QImage one = paint("iiii", {width, 300});
        EXPECT_EQ(model.bubbles().front().diameter > namedBubbleDiameter, isNamed);
        EXPECT_NE(one == paint("wwww", {width, 300}), isNamed) << width;
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
