#pragma once

#include <string>

/// Whether a graphics card can be used by this process. `devices` is the folder of the devices, "/dev".
[[nodiscard]] bool hasGraphicsCard(const std::string& devices);

/// Whether the user has chosen by the environment how windows are drawn.
[[nodiscard]] bool isRendererChosen();

/// Lets Qt's own renderer draw where there is no graphics card and the user has chosen nothing: an OpenGL that runs on
/// the processor needs a core for a moving bar, and much memory. Must be called before the first window is made.
void chooseRenderer();
