#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtQuick/QQuickItem>

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

    /// The symbols of the disks, in the order of their cards.
    static std::string symbolsOfDisks(const QQuickItem& item) {
        const std::string symbol = item.property("symbol").toString().toStdString();
        std::string all = symbol.ends_with("drive.fill") ? symbol + ' ' : "";
        for (const QQuickItem* const child : item.childItems()) {
            all += symbolsOfDisks(*child);
        }
        return all;
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
    const char* const estimate =
        "“Sistema y otros” es una estimación que incluye macOS, datos del sistema, instantáneas APFS y archivos del "
        "usuario fuera de las carpetas mostradas.";
    for (const char* const text :
         {"Estado de almacenamiento", "Una vista general de tus discos y del espacio usado", "Macintosh HD", "Copias",
          "120 GB usados de 494 GB", "374 GB disponibles · 24% ocupado", "1,62 TB usados de 2 TB",
          "380 GB disponibles · 81% ocupado", "Uso del disco principal", "102 KB", "2 MB", "119,99 GB", estimate}) {
        EXPECT_TRUE(driver.shows(text)) << text;
    }
    EXPECT_EQ(driver.names(list),
              (std::vector<std::string>{"Macintosh HD", "Copias", "Música", "Vídeos", "Imágenes", "Documentos",
                                        "Descargas", "Aplicaciones", "Sistema y otros"}));
    EXPECT_EQ(symbolsOfDisks(*app.window().contentItem()), "internaldrive.fill externaldrive.fill ");

    // Asked for anew, the volumes are there at once and the sizes follow.
    tree.file("home/Downloads/b", 750 * 4096);
    ASSERT_TRUE(driver.press("Actualizar"));
    EXPECT_EQ(volumes.asked, 2);
    EXPECT_TRUE(driver.waitFor("3,1 MB"));
    EXPECT_FALSE(driver.shows("Calculando tamaños… Puede tardar unos minutos"));
    driver.key("Ctrl+1");
    ASSERT_TRUE(driver.press("Inicio"));
    EXPECT_EQ(volumes.asked, 2) << "the screen was there already";
    driver.key("Ctrl+2");
    EXPECT_FALSE(driver.shows("Estado de almacenamiento"));
    driver.key("Ctrl+1");
    EXPECT_TRUE(waitUntil([&] { return volumes.asked == 3; })) << "each visit begins anew";
}

TEST_F(HomeJourney, NarrowWideAndWithoutVolumes) {
    volumes.answers.clear();
    showWindow();
    ASSERT_TRUE(waitForSizes());
    EXPECT_TRUE(driver.waitFor("Uso del disco principal"));
    EXPECT_EQ(driver.names(list).size(), 7U);
    const auto columns = [&] {
        const int top = driver.find("Música", list)->rect().top();
        int count = 0;
        for (const std::string& name : driver.names(list)) {
            const QRect card = driver.find(name, list)->rect();
            EXPECT_GE(card.width(), 209) << name;
            count += card.top() == top ? 1 : 0;
        }
        return count;
    };
    const std::pair<QSize, int> sizes[] = {{{980, 650}, 3}, {{1440, 900}, 5}, {{3840, 2160}, 7}};
    for (const auto& [size, expected] : sizes) {
        app.window().resize(size);
        EXPECT_TRUE(waitUntil([&, expected = expected] { return columns() == expected; })) << size.width();
    }
}

}  // namespace
