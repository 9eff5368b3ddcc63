#pragma once

#include <QtQuick/QQuickImageProvider>

/// Draws the program's symbols in any size and colour, for the URL "image://symbol/NAME/RRGGBB" or ".../AARRGGBB".
class SymbolProvider final : public QQuickImageProvider {
public:
    /// The host part of the URL under which the provider is registered.
    static constexpr auto name = "symbol";

    SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

    /// The symbol in a square of `pixels` device pixels; a null image for an unknown name. Drawn once: symbols that
    /// were asked for lately are kept. Callable from any thread.
    [[nodiscard]] static QImage image(const QString& symbol, const QColor& color, int pixels);
};
