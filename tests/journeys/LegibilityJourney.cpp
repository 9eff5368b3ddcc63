// Every screen and state is looked at: whether its texts stand out, fit and leave room for the lists.

#include "Theme/Contrast.h"
#include "support/Journey.h"

#include <QtGui/QFont>
#include <QtQuick/QQuickItem>

namespace {

constexpr QSize smallest(980, 650);

class LegibilityJourney : public KeyboardJourney {
protected:
    void SetUp() override {
        KeyboardJourney::SetUp();
        tree.file("files/Un nombre de archivo bastante largo para cualquier lista de este programa.mov", 61 * 4096);
        volumes.add("/media/Copias", VolumeValues{QStringLiteral("Copias de seguridad"), 2'000'000'000'000, {}, 10});
        trash.refusesAll = true;
        app.window().resize(smallest);
        showJunk(8);
        EXPECT_EQ(app.window().minimumSize(), smallest);
    }

    /// Looks at every screen and state.
    void walk(const std::function<void(const std::string& screen)>& look) {
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
        waitForScan();
        ASSERT_TRUE(driver.tabTo(files));
        settled("map");
        press("Down");
        settled("map, one selected");
        app.store().setSearch(QStringLiteral("nada"));
        settled("map, nothing found");
        app.store().setSearch({});
        press("F10");
        settled("menu");
        press("Esc Del");
        settled("question");
        press("Return");
        ASSERT_TRUE(waitForDialog(failure));
        settled("failure");
        press("Esc Ctrl+3");
        ASSERT_TRUE(driver.waitFor("app0", list));
        press("Down");
        settled("junk");
        ASSERT_TRUE(driver.press("Limpiar todo lo seguro"));
        press("Return");
        ASSERT_TRUE(waitForDialog("Limpieza parcial: 8 elementos no se pudieron mover."));
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
    [[nodiscard]] std::vector<SeenText> texts() const {
        std::vector<SeenText> all;
        for (const QQuickItem* const item : driver.items()) {
            const QString text = item->property("text").toString();
            if (item->isEnabled() && item->inherits("QQuickText") && !text.isEmpty()) {
                all.push_back({item, text.toStdString(), lettersOf(*item)});
            }
        }
        std::erase_if(all, [](SeenText& text) {
            QRectF seen = text.box & QRectF({}, smallest);
            for (const QQuickItem* around = text.item; around != nullptr; around = around->parentItem()) {
                seen &= around->clip() ? around->mapRectToScene({QPointF(), around->size()}) : seen;
                seen = around->opacity() < 0.5 ? QRectF() : seen;
                text.isAbove = text.isAbove || around->inherits("QQuickPopupItem");
            }
            text.isWhole = seen == text.box;
            return seen.height() <= text.box.height() / 2 || seen.width() <= 1;
        });
        return all;
    }

private:
    static QRectF lettersOf(const QQuickItem& text) {
        const auto number = [&](const char* property) { return text.property(property).toReal(); };
        QRectF box(number("leftPadding"), number("topPadding"), number("contentWidth"), number("contentHeight"));
        if (text.property("horizontalAlignment").toInt() == Qt::AlignHCenter) {
            box.moveLeft((text.width() - box.width()) / 2);
        }
        return text.mapRectToScene(box);
    }
};

TEST_F(LegibilityJourney, TextsStandOutOnWhatIsBehindThem) {
    for (const auto preference : {Appearance::Preference::light, Appearance::Preference::dark}) {
        appearance.prefer(preference);
        int count = 0;
        walk([&](const std::string& screen) {
            const QImage picture = app.window().grabWindow();
            for (const SeenText& seen : texts()) {
                const auto ink = seen.item->property("color").value<QColor>();
                const auto font = seen.item->property("font").value<QFont>();
                const bool isLarge = font.pixelSize() >= 24 || (font.bold() && font.pixelSize() >= 19);
                const QRect box = seen.box.toRect() & picture.rect();
                EXPECT_TRUE(!seen.isWhole || contrast(ink, groundOf(picture, box)) >= (isLarge ? 3 : 4.5))
                    << seen.text << " on " << screen << (preference == Appearance::Preference::dark ? ", dark" : "");
                count += seen.isWhole ? 1 : 0;
            }
        });
        EXPECT_GT(count, 250);
    }
}

class LargeText : public LegibilityJourney, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        QFont font = m_before;
        font.setPointSize(GetParam());
        QGuiApplication::setFont(font);
        LegibilityJourney::SetUp();
    }
    void TearDown() override {
        LegibilityJourney::TearDown();
        QGuiApplication::setFont(m_before);
    }

private:
    const QFont m_before = QGuiApplication::font();
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
            for (auto other = text + 1; other != seen.end(); ++other) {
                const QRectF common = text->box & other->box;
                EXPECT_FALSE(text->isAbove == other->isAbove && text->isWhole && other->isWhole && common.width() > 1 &&
                             common.height() > 3)
                    << text->text << " and " << other->text << " overlap on " << screen;
            }
        }
        for (const QQuickItem* const item : driver.items()) {
            if (item->isEnabled() && item->inherits("QQuickListView")) {
                const double rows = std::min(4.0, item->property("count").toReal());
                EXPECT_GE(item->height(), rows * item->property("rowHeight").toReal())
                    << "a list shows fewer than four rows on " << screen;
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Points, LargeText, testing::Values(9, 11, 15, 20));

TEST_F(KeyboardJourney, ALongNameIsAskedAboutInFull) {
    const std::string middle(200, 'n');
    const std::string file = "El principio " + middle + " y el final.mov";
    tree.file("files/" + file, 100 * 4096);
    showMap();
    press("Home Delete");
    ASSERT_TRUE(waitUntil([this] { return !openDialog().empty(); }));
    const std::string question = openDialog();
    EXPECT_TRUE(question.starts_with("¿Mover “El principio nnn")) << question;
    EXPECT_TRUE(question.ends_with("nnn y el final.mov” a la papelera?")) << question;
    EXPECT_LE(question.size(), 100U);
    // The rows behind the question have that text too.
    const auto count = [&] {
        return std::ranges::count_if(driver.items(), [text = QString::fromStdString(file)](const QQuickItem* item) {
            return item->property("text") == text;
        });
    };
    const auto before = count();
    QTest::mouseMove(&app.window(), driver.middleOf(question, QAccessible::StaticText));
    EXPECT_TRUE(waitUntil([&] { return count() == before + 1; })) << "a hint";
    const QAccessibleInterface* const card = driver.find(question, dialog);
    const std::string promise = "Duskfern nunca borra archivos sin esta confirmación.";
    EXPECT_EQ(card->text(QAccessible::Description).toStdString(), file + " " + promise);
    EXPECT_TRUE(card->rect().contains(driver.find(promise, QAccessible::StaticText)->rect()));
}

}  // namespace
