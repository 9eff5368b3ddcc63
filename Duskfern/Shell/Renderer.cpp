#include "Shell/Renderer.h"

#include "Foundation/Descriptor.h"

#include <QtQuick/QQuickWindow>

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

/// Where drivers for drawing without a screen are found, below the folder of devices.
struct CardDevice {
    const char* folder;
    const char* prefix;
};

constexpr std::array<CardDevice, 3> cardDevices{{
    {"dri", "renderD"},  // Every driver of the kernel.
    {"", "nvidiactl"},   // NVIDIA's own driver, which may come without its part for the above.
    {"", "dxg"},         // The card of the Windows that a Linux runs in.
}};

/// By each of these the user decides.
constexpr std::array choices{
    "QT_QUICK_BACKEND",                      // The renderer itself,
    "QMLSCENE_DEVICE",                       // by an older name.
    "QSG_RHI_BACKEND",                       // Vulkan or OpenGL,
    "QSG_RHI_PREFER_SOFTWARE_RENDERER",      // drawn by the processor.
    "QT_XCB_GL_INTEGRATION",                 // How OpenGL is reached on X11,
    "QT_WAYLAND_CLIENT_BUFFER_INTEGRATION",  // and on Wayland.
    "LIBGL_ALWAYS_SOFTWARE",                 // Mesa's drivers.
    "GALLIUM_DRIVER",
    "MESA_LOADER_DRIVER_OVERRIDE",
};

bool canBeOpened(const std::filesystem::path& device) {
    return Descriptor(open(device.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)).isOpen();
}

}  // namespace

bool hasGraphicsCard(const std::string& devices) {
    namespace fs = std::filesystem;
    return std::any_of(cardDevices.begin(), cardDevices.end(), [&](const CardDevice& device) {
        std::error_code error;
        for (fs::directory_iterator entry(fs::path(devices) / device.folder, error), end; !error && entry != end;
             entry.increment(error)) {
            if (entry->path().filename().native().starts_with(device.prefix) && canBeOpened(entry->path())) {
                return true;
            }
        }
        return false;
    });
}

bool isRendererChosen() {
    return std::any_of(choices.begin(), choices.end(), [](const char* variable) {
        const char* const value = std::getenv(variable);
        return value != nullptr && *value != '\0';
    });
}

void chooseRenderer() {
    const bool isOwn = QQuickWindow::graphicsApi() == QSGRendererInterface::Software;
    if (!isOwn && !isRendererChosen() && !hasGraphicsCard("/dev")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}
