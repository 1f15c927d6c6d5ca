// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

#include <QImage>

namespace recognition {

/// Makes letters in `grey` stand out that differ from what they stand on by their colour alone,
/// such as red ones on black or yellow ones on white: luma hardly tells those apart. `colours` are
/// its rows from `top` on, opaque, in 32 bits. Letters on what is not of one colour stay as they
/// are.
void showColouredInk(const QImage &colours, GreyImage &grey, int top);

} // namespace recognition
