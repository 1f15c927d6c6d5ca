// SPDX-License-Identifier: MIT
#include "PlainButton.h"

#include "FocusRing.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QBuffer>
#include <QDesktopServices>
#include <QImageReader>
#include <QPainter>
#include <QStyle>
#include <QUrl>

namespace {
// In points.
constexpr int symbolSize = 14;
constexpr int gap = 6;
constexpr int ringRadius = 3;
/// Pixels of the symbol's picture: sharp up to fourfold scaling.
constexpr int symbolPixels = 4 * symbolSize;

/// What a screen reader is told of a link: its role, and that it can be followed.
class AccessibleLink : public QAccessibleWidget
{
public:
    explicit AccessibleLink(LinkButton *button)
        : QAccessibleWidget(button, QAccessible::Link, button->text())
    {
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &action) override
    {
        if (action == pressAction()) {
            static_cast<LinkButton *>(widget())->click();
        } else {
            QAccessibleWidget::doAction(action);
        }
    }
};

QAccessibleInterface *accessibleLink(const QString &, QObject *object)
{
    auto *button = qobject_cast<LinkButton *>(object);
    return button ? new AccessibleLink(button) : nullptr;
}
} // namespace

PlainButton::PlainButton(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAutoDefault(false);
}

void PlainButton::setSymbol(const QByteArray &picture)
{
    QBuffer buffer;
    buffer.setData(picture);
    QImageReader reader(&buffer);
    reader.setScaledSize({symbolPixels, symbolPixels});
    m_symbol = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    updateGeometry();
}

QSize PlainButton::sizeHint() const
{
    const QSize textSize = fontMetrics().size(Qt::TextShowMnemonic, text());
    return m_symbol.isNull()
               ? textSize
               : QSize(symbolSize + gap + textSize.width(), qMax(symbolSize, textSize.height()));
}

QColor PlainButton::textColor() const
{
    return palette().color(QPalette::WindowText);
}

void PlainButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (isDown()) {
        painter.setOpacity(0.6);
    }
    QRect textRect = rect();
    if (!m_symbol.isNull()) {
        QImage tinted = m_symbol;
        QPainter tint(&tinted);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(tinted.rect(), textColor());
        tint.end();
        const QRect place =
            QStyle::alignedRect(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter,
                                QSize(symbolSize, symbolSize), rect());
        painter.drawImage(place, tinted);
        textRect = QStyle::visualRect(layoutDirection(), rect(),
                                      rect().adjusted(symbolSize + gap, 0, 0, 0));
    }
    painter.setPen(textColor());
    const int mnemonic = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0
                             ? Qt::TextShowMnemonic
                             : Qt::TextHideMnemonic;
    painter.drawText(textRect,
                     static_cast<int>(QStyle::visualAlignment(
                         layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter)) |
                         mnemonic,
                     text());
    if (showsFocus(*this)) {
        // There is no control to be outside of: the ring takes the button's own edge.
        drawFocusRing(painter, QRectF(rect()).adjusted(4, 4, -4, -4), ringRadius, palette());
    }
}

LinkButton::LinkButton(const QString &text, const QString &address, QWidget *parent)
    : PlainButton(text, parent)
{
    QAccessible::installFactory(accessibleLink);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QPushButton::clicked, this,
            [address] { QDesktopServices::openUrl(QUrl(address)); });
}

QColor LinkButton::textColor() const
{
    return palette().color(QPalette::Link);
}
