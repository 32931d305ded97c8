#pragma once

#include "embedded-gui-engine/painter.h"

/// Draws the service mode's test picture: 1 to 5 fill the whole surface with red, green, blue, white and black, 6 draws
/// four bands that grow from black at the top to white, red, green and blue. Any other number draws nothing.
void drawDisplayTest(Engine::Painter& painter, int picture);
