#pragma once

#include <QtQuick/QQuickImageProvider>

/// Draws the program's symbols in any size and colour: "image://symbol/NAME/RRGGBB", or with AARRGGBB.
class SymbolProvider final : public QQuickImageProvider {
public:
    /// The host part of the address, to register the provider under.
    static constexpr auto name = "symbol";

    SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

    /// The symbol filling a square of `pixels` device pixels; an empty image for an unknown name.
    [[nodiscard]] static QImage image(const QString& symbol, const QColor& color, int pixels);
};
