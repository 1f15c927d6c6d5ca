// SPDX-License-Identifier: MIT
#include "Platform/Portal/ScreenshotRequest.h"

#include <QFile>
#include <QImageReader>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// Takes the picture out of the portal's file, which is ours to delete.
void take(const QString &uri, const ScreenshotRequest::PictureHandler &handler)
{
    const QString file = QUrl(uri).toLocalFile();
    QImageReader reader(file);
    // By what is in it, whatever it is called.
    reader.setDecideFormatFromContent(true);
    const QImage image = file.isEmpty() ? QImage() : reader.read();
    if (!file.isEmpty()) {
        QFile::remove(file);
    }
    const QString problem = u"The portal's picture of the screen, “%1”, cannot be read: %2"_s.arg(
        uri, file.isEmpty() ? u"not a file"_s : reader.errorString());
    handler(image.convertToFormat(QImage::Format_RGB32), image.isNull() ? problem : QString());
}
} // namespace

ScreenshotRequest::ScreenshotRequest(PictureHandler handler, const QString &parentWindow)
    : PortalRequest(
          {u"Screenshot"_s, u"Screenshot"_s, {parentWindow}, {{u"interactive"_s, false}}},
          [handler = std::move(handler)](PortalAnswer answer, const QVariantMap &results) {
              if (answer == PortalAnswer::Granted) {
                  take(results.value(u"uri"_s).toString(), handler);
                  return;
              }
              handler({}, answer == PortalAnswer::Denied
                              ? u"The portal took no picture of the screen: denied"_s
                              : u"The portal took no picture of the screen"_s);
          })
{
}
