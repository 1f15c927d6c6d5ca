// SPDX-License-Identifier: MIT
#include "Platform/Portal/ScreenshotRequest.h"

#include <QFile>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// There was no window of ours that the question could belong to.
const QString noParentWindow;

/// The picture in the portal's file. The file is ours to delete.
QImage takeImage(const QString &uri)
{
    const QString file = QUrl(uri).toLocalFile();
    const QImage image(file);
    if (!file.isEmpty()) {
        QFile::remove(file);
    }
    return image.convertToFormat(QImage::Format_RGB32);
}
} // namespace

ScreenshotRequest::ScreenshotRequest(PictureHandler handler)
    : PortalRequest(
          {u"Screenshot"_s, u"Screenshot"_s, {noParentWindow}, {{u"interactive"_s, false}}},
          [handler = std::move(handler)](PortalAnswer answer, const QVariantMap &results) {
              handler(answer == PortalAnswer::Granted
                          ? takeImage(results.value(u"uri"_s).toString())
                          : QImage());
          })
{
}
