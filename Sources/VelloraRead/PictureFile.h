// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <stdexcept>

/// Why a picture cannot be had from a file, in words for the user.
class PictureError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The picture in the file at `path`, or on standard input if `path` is "-": its first one,
/// upright, without transparency. Blocks until the file has been read to its end.
///
/// `path` is in bytes, as the system gives it, and need not be valid in any encoding. The format is
/// told by the content, never by the name; only pictures made of pixels are read. Files of more
/// than 256 MiB and pictures of more than 64 Mi pixels are refused before they are unpacked. Throws
/// PictureError.
QImage pictureFromFile(const char *path);
