#include "support/Journey.h"

#include <QtQuick/QQuickItem>

#include <algorithm>

namespace {

class HomeJourney : public Journey<FakeTrash> {
protected:
    void SetUp() override {
        tree.file("home/Music/a", 25 * 4096);
        tree.file("home/Documents/a", 250 * 4096);
        tree.file("home/Desktop/a", 250 * 4096);
        tree.file("system/opt/a", 2500 * 4096);
        volumes.add("/media/Copias", VolumeValues{{}, 2'000'000'000'000, {}, 380'000'000'000});
        volumes.add("/", VolumeValues{QString(), 494'000'000'000, {}, 374'000'000'000});
    }

    /// Whether the measurement is over.
    [[nodiscard]] bool waitForSizes() const {
        return waitUntil([this] { return driver.isEnabled("Actualizar"); }) && driver.waitFor("10,2 MB");
    }
};

TEST_F(HomeJourney, TheDisksAndWhatFillsTheMainOne) {
    EXPECT_EQ(volumes.asked, 0) << "the window comes first";
    showWindow();
    ASSERT_TRUE(waitForSizes());
    expectShown({"120 GB usados de 494 GB", "374 GB disponibles · 24% ocupado", "102 KB", "2 MB", "119,99 GB"});
    EXPECT_EQ(driver.names(list), (Texts{"Macintosh HD", "Copias", "Música", "Vídeos", "Imágenes", "Documentos",
                                         "Descargas", "Aplicaciones", "Sistema y otros"}));
    Texts symbols;
    for (const QQuickItem* const item : driver.items()) {
        symbols.push_back(item->property("symbol").toString().toStdString());
    }
    std::erase_if(symbols, [](const std::string& symbol) { return !symbol.ends_with("drive.fill"); });
    EXPECT_EQ(symbols, (Texts{"internaldrive.fill", "externaldrive.fill"}));

    // Asked for anew, the volumes are there at once and the sizes follow.
    tree.file("home/Downloads/b", 750 * 4096);
    ASSERT_TRUE(driver.press("Actualizar"));
    EXPECT_EQ(volumes.asked, 2);
    EXPECT_TRUE(driver.waitFor("3,1 MB"));
    driver.key("Ctrl+2 Ctrl+1");
    EXPECT_TRUE(waitUntil([&] { return volumes.asked == 3; })) << "each visit begins anew";
}

TEST_F(HomeJourney, NarrowWideAndWithoutVolumes) {
    volumes.answers.clear();
    showWindow();
    ASSERT_TRUE(waitForSizes());
    EXPECT_TRUE(driver.waitFor("Uso del disco principal"));
    EXPECT_EQ(driver.names(list).size(), 7U);
    const auto topOf = [&](const std::string& name) { return driver.find(name, list)->rect().top(); };
    const auto isInFirstLine = [&](const std::string& name) { return topOf(name) == topOf("Música"); };
    for (const auto& [size, columns] : {std::pair(QSize(980, 650), 3), {{1440, 900}, 5}, {{3840, 2160}, 7}}) {
        app.window().resize(size);
        EXPECT_TRUE(waitUntil([&, columns = columns] {
            return std::ranges::count_if(driver.names(list), isInFirstLine) == columns;
        })) << size.width();
        EXPECT_GE(driver.find("Música", list)->rect().width(), 209);
    }
}

}  // namespace
