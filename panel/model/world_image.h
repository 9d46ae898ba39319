// Worlds as images of Qt, and smaller worlds.
#ifndef VITRELL_PANEL_MODEL_WORLD_IMAGE_H_
#define VITRELL_PANEL_MODEL_WORLD_IMAGE_H_

#include <QImage>
#include <QSize>

#include "headless/world_buffer.h"

namespace vitrell::panel {

// 8 bits for the screen: without alpha if the world is opaque, otherwise premultiplied.
QImage ImageOf(const headless::WorldBuffer& world);

// Of the same depth and any other size, averaged over the pixels that become one, weighted by their
// alpha.
headless::WorldBuffer ScaledWorld(const headless::WorldBuffer& world, const QSize& size);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_WORLD_IMAGE_H_
