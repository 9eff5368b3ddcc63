#include "SpaceMap/StatusTexts.h"

#include <gtest/gtest.h>

namespace {

TEST(StatusTexts, SayHowItStands) {
    EXPECT_EQ(StatusTexts::analysis(true, 12'345, 7), QStringLiteral("Analizando… 12.345 archivos"));
    EXPECT_EQ(StatusTexts::analysis(false, 12'345, 7),
              QStringLiteral("Análisis completado · 7 elementos no accesibles"));
    EXPECT_EQ(StatusTexts::moving(-1), QStringLiteral("Moviendo a la papelera…"));
    EXPECT_EQ(StatusTexts::moving(0), QStringLiteral("Moviendo a la papelera… 0%"));
}

}  // namespace
