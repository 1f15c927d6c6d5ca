// SPDX-License-Identifier: MIT
#include "Platform/Portal/ScreenshotRequest.h"

#include "Platform/Portal/AwaitedPictures.h"
#include "Platform/Portal/PortalPicture.h"

#include <utility>

using namespace Qt::StringLiterals;

ScreenshotRequest::ScreenshotRequest(PictureHandler handler, const QString &parentWindow)
    : PortalRequest({u"Screenshot"_s, u"Screenshot"_s, {parentWindow}, {{u"interactive"_s, false}}},
                    [handler = std::move(handler), awaited = AwaitedPicture()](
                        PortalAnswer answer, const QVariantMap &results) mutable {
                        if (answer == PortalAnswer::Granted) {
                            const auto [image, problem] = takePortalPicture(
                                results.value(u"uri"_s).toString(), awaited.askedAt());
                            awaited.end();
                            handler(image, problem);
                            return;
                        }
                        if (answer == PortalAnswer::Denied) {
                            awaited.end();
                            handler({}, u"The portal took no picture of the screen: denied"_s);
                            return;
                        }
                        handler({}, u"The portal took no picture of the screen"_s);
                    })
{
}
