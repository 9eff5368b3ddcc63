// Every screen and state is looked at: whether its texts stand out, fit and leave room for the lists.

#include "Theme/Contrast.h"
#include "support/KeyboardJourney.h"

#include <QtGui/QFont>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>

#include <map>

namespace {

QColor over(const QColor& below, const QColor& above) {
    const auto mix = [&](float b, float a) { return b * (1 - above.alphaF()) + a * above.alphaF(); };
    return QColor::fromRgbF(mix(below.redF(), above.redF()), mix(below.greenF(), above.greenF()),
                            mix(below.blueF(), above.blueF()));
}

class LegibilityJourney : public KeyboardJourney {
protected:
    using Look = std::function<void(const std::string& screen)>;

    void SetUp() override {
        KeyboardJourney::SetUp();
        tree.file("files/Un nombre de archivo bastante largo para cualquier lista de este programa.mov", 61 * 4096);
        volumes.add("/media/Copias", VolumeValues{QStringLiteral("Copias de seguridad"), 2'000'000'000'000, {}, 10});
        for (int i = 0; i < 8; ++i) {
            tree.file("home/.cache/app" + std::to_string(i) + "/a", 2 * 4096);
        }
        trash.refusesAll = true;
        showWindow();
        app.window().resize(app.window().minimumSize());
        EXPECT_EQ(app.window().minimumSize(), QSize(980, 650));
    }

    /// Looks at every screen and state.
    void walk(const Look& look) {
        const auto settled = [&](const char* screen) {
            QTest::qWait(60);
            look(screen);
        };
        press("Ctrl+1");
        ASSERT_TRUE(waitUntil([this] { return driver.isEnabled("Actualizar"); }));
        settled("Inicio");
        press("End");
        settled("Inicio, end");
        app.store().setRootURL({});
        press("Ctrl+2");
        settled("welcome");
        chooser.next = &browser;
        driver.key("Ctrl+O");
        ASSERT_TRUE(waitForDialog("Elegir carpeta"));
        settled("folder dialog");
        press("Esc");
        chooser.next = nullptr;
        driver.key("Ctrl+O");
        ASSERT_TRUE(waitUntil([this] { return app.store().hasRoot() && !app.store().isScanning(); }));
        ASSERT_TRUE(driver.tabTo("Archivos más grandes"));
        settled("map");
        press("Down");
        QTest::mouseMove(&app.window(), app.window().mapFromGlobal(driver.find("f10.mov", list)->rect().center()));
        settled("map, one selected and one under the pointer");
        const QPoint trashButton =
            app.window().mapFromGlobal(driver.find("A la papelera", QAccessible::Button)->rect().center());
        QTest::mousePress(&app.window(), Qt::LeftButton, {}, trashButton);
        settled("map, a button pressed");
        QTest::mouseMove(&app.window(), {5, 5});
        QTest::mouseRelease(&app.window(), Qt::LeftButton, {}, {5, 5});
        app.store().setSearch(QStringLiteral("nada"));
        settled("map, nothing found");
        app.store().setSearch({});
        press("F10");
        settled("menu");
        press("Esc Del");
        settled("question");
        press("Return");
        ASSERT_TRUE(waitForDialog("No se pudo completar la acción"));
        settled("failure");
        press("Esc Ctrl+3");
        ASSERT_TRUE(driver.waitFor("app0", list));
        press("Down");
        settled("junk");
        ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
        press("Return");
        ASSERT_TRUE(waitUntil([this] { return openDialog().starts_with("Limpieza parcial"); }));
        settled("junk, message");
        press("Esc");
    }

    /// What is seen of a text that can be read: enabled, not hidden, and not scrolled away.
    struct SeenText {
        const QQuickItem* item = nullptr;
        std::string text;
        QRectF box;            ///< In the window, of the letters.
        bool isWhole = false;  ///< Nothing of it is scrolled away.
        bool isAbove = false;  ///< In a menu, which covers what is below.
    };
    [[nodiscard]] std::vector<SeenText> texts() {
        std::vector<SeenText> found;
        collect(app.window().contentItem(), QRectF(QPointF(), app.window().size()), false, found);
        return found;
    }

private:
    void collect(const QQuickItem* item, QRectF clip, bool isAbove, std::vector<SeenText>& found) const {
        if (!item->isVisible() || !item->isEnabled() || item->opacity() < 0.5) {
            return;
        }
        if (item->clip()) {
            clip &= item->mapRectToScene({QPointF(), item->size()});
        }
        if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty()) {
            const QSizeF size(item->property("contentWidth").toReal(), item->property("contentHeight").toReal());
            QRectF box(QPointF(item->property("leftPadding").toReal(), item->property("topPadding").toReal()), size);
            if (item->property("horizontalAlignment").toInt() == Qt::AlignHCenter) {
                box.moveLeft((item->width() - size.width()) / 2);
            }
            const QRectF whole = item->mapRectToScene(box);
            if (const QRectF seen = whole & clip; seen.height() > whole.height() / 2 && seen.width() > 1) {
                found.push_back({item, item->property("text").toString().toStdString(), whole, seen == whole, isAbove});
            }
        }
        for (const QQuickItem* const child : item->childItems()) {
            collect(child, clip, isAbove || item->inherits("QQuickPopupItem"), found);
        }
    }

protected:
    /// Looks at the texts and rings of a theme, in light and dark.
    void expectColorsStandOut(const QObject& theme, bool strong) {
        for (const auto preference : {Appearance::Preference::light, Appearance::Preference::dark}) {
            appearance.prefer(preference);
            const auto color = [&](const char* name) { return theme.property(name).value<QColor>(); };
            const auto expect = [&](const char* above, double least, std::initializer_list<QColor> surfaces) {
                for (const QColor& surface : surfaces) {
                    EXPECT_GE(contrast(color(above), surface), least)
                        << above << " on " << qPrintable(surface.name()) << " in " << int(preference);
                }
            };
            const QColor window = color("window");
            QColor shade = color("primary");
            shade.setAlphaF(0.14F);  // A card, and a row or button on it that is pressed.
            const QColor pressed = over(window, shade);
            const QColor selected = over(window, color("selection"));
            for (const char* const text : {"primary", "secondary"}) {
                expect(text, 4.5,
                       {window, pressed, selected, color("sidebar"), over(color("raised"), color("selection"))});
            }
            if (strong) {
                expect("secondary", 7, {window});
                EXPECT_GE(contrast(over(window, color("divider")), window), 3) << int(preference);
            }
            expect("focus", 3, {window, pressed, selected, color("sidebar"), color("raised")});
            expect("redMark", 3, {window, pressed});
            expect("redText", 4.5, {window, pressed});
            expect("tealText", 4.5, {window, pressed, selected});
            expect("onTint", 4.5, {color("redFill"), color("accentFill")});
        }
    }
};

TEST_F(LegibilityJourney, TheThemesColoursStandOut) {
    QQmlComponent component(qmlEngine(app.window().contentItem()->childItems().front()));
    component.setData("import QtQml; import Duskfern.Theme; QtObject { property QtObject theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_NE(holder, nullptr) << qPrintable(component.errorString());
    const auto* const theme = holder->property("theme").value<QObject*>();
    using Accent = Appearance::Accent;
    const std::optional<Accent> accents[] = {std::nullopt,           Accent{0.2, 0.52, 0.89}, Accent{1, 0.84, 0.04},
                                             Accent{0.1, 0.08, 0.4}, Accent{0, 0, 0},         Accent{1, 1, 1}};
    for (const auto& accent : accents) {
        for (const bool strong : {false, true}) {
            appearance.wish(strong, accent);
            expectColorsStandOut(*theme, strong);
        }
    }
}

TEST_F(LegibilityJourney, TextsStandOutOnWhatIsBehindThem) {
    for (const auto preference : {Appearance::Preference::light, Appearance::Preference::dark}) {
        appearance.prefer(preference);
        int count = 0;
        walk([&](const std::string& screen) {
            const QImage picture = app.window().grabWindow();
            for (const SeenText& seen : texts()) {
                if (!seen.isWhole) {
                    continue;
                }
                // What is behind a text is the most frequent colour around its letters.
                std::map<QRgb, int> colors;
                const QRect box = (seen.box & QRectF(picture.rect())).toRect();
                for (int y = box.top(); y <= box.bottom(); ++y) {
                    for (int x = box.left(); x <= box.right(); ++x) {
                        ++colors[picture.pixel(x, y)];
                    }
                }
                const auto behind = std::max_element(colors.begin(), colors.end(),
                                                     [](const auto& a, const auto& b) { return a.second < b.second; });
                const auto ink = seen.item->property("color").value<QColor>();
                const auto font = seen.item->property("font").value<QFont>();
                const bool isLarge = font.pixelSize() >= 24 || (font.bold() && font.pixelSize() >= 19);
                EXPECT_GE(contrast(ink, QColor(behind->first)), isLarge ? 3 : 4.5)
                    << seen.text << " on " << screen << (preference == Appearance::Preference::dark ? ", dark" : "");
                ++count;
            }
        });
        EXPECT_GT(count, 250);
    }
}

class LargeText : public LegibilityJourney, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        m_before = QGuiApplication::font();
        QFont font = m_before;
        font.setPointSize(GetParam());
        QGuiApplication::setFont(font);
        LegibilityJourney::SetUp();
    }
    void TearDown() override { QGuiApplication::setFont(m_before); }

    /// Lists that show fewer than four of their rows as a whole.
    [[nodiscard]] std::string shortLists(const QQuickItem* item) const {
        std::string found;
        if (!item->isVisible() || !item->isEnabled()) {
            return found;
        }
        const int rows = std::min(4, item->property("count").toInt());
        if (const double height = item->property("rowHeight").toReal() + item->property("spacing").toReal();
            item->inherits("QQuickListView") && height > 0) {
            const double room = item->height() - item->property("topMargin").toReal();
            if (room < rows * height - item->property("spacing").toReal()) {
                found = std::to_string(room / height) + " rows; ";
            }
        }
        for (const QQuickItem* const child : item->childItems()) {
            found += shortLists(child);
        }
        return found;
    }

private:
    QFont m_before;
};

TEST_P(LargeText, FitsTheSmallestWindow) {
    walk([&](const std::string& screen) {
        const std::vector<SeenText> seen = texts();
        for (auto text = seen.begin(); text != seen.end(); ++text) {
            // Names and paths may be shortened in the middle; what the program itself says may not.
            const bool mayShorten = text->item->property("elide").toInt() == Qt::ElideMiddle;
            const bool isCut = text->item->property("truncated").toBool() ||
                               text->item->property("contentWidth").toReal() > text->item->width() + 1;
            EXPECT_FALSE(isCut && !mayShorten) << text->text << " is cut on " << screen;
            EXPECT_TRUE(QRectF(QPointF(-1, -1), QSizeF(982, 652)).contains(text->box) || !text->isWhole)
                << text->text << " leaves the window on " << screen;
            for (auto other = text + 1; other != seen.end(); ++other) {
                const QRectF common = text->box & other->box;
                EXPECT_FALSE(text->isAbove == other->isAbove && text->isWhole && other->isWhole && common.width() > 1 &&
                             common.height() > 3)
                    << text->text << " and " << other->text << " overlap on " << screen;
            }
        }
        EXPECT_EQ(shortLists(app.window().contentItem()), "") << screen;
    });
}

INSTANTIATE_TEST_SUITE_P(Points, LargeText, testing::Values(9, 11, 15, 20));

}  // namespace
