// SPDX-License-Identifier: MIT
#include "AboutBlock.h"

#include "AppIcon.h"
#include "FormColors.h"
#include "FormSection.h"
#include "PlainButton.h"
#include "Platform/Bundle.h"
#include "Publisher.h"
#include "SettingsView.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <functional>

using namespace Qt::StringLiterals;

namespace {
// In points.
constexpr int iconGap = 14;
constexpr int lineGap = 3;
constexpr int versionGap = 6;
constexpr int padding = 4;
constexpr int nameSize = 14;
constexpr int textSize = 12;
constexpr int smallTextSize = 11;

/// A line of text in a colour that follows the palette.
class TintedLabel : public QLabel
{
public:
    using Tint = QColor (*)(const QPalette &);

    TintedLabel(const QString &text, Tint tint, QWidget *parent)
        : QLabel(text, parent)
        , m_tint(tint)
    {
        apply();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        QLabel::changeEvent(event);
        // Our own colour does not change a second time, and ends this.
        if (event->type() == QEvent::PaletteChange) {
            apply();
        }
    }

private:
    void apply()
    {
        QPalette colors = parentWidget()->palette();
        colors.setColor(QPalette::WindowText, m_tint(colors));
        setPalette(colors);
    }

    Tint m_tint;
};

void setTextSize(QWidget &widget, int size, QFont::Weight weight = QFont::Normal)
{
    QFont font = widget.font();
    font.setPixelSize(size);
    font.setWeight(weight);
    widget.setFont(font);
}

QString publishersText(const char *text)
{
    return QCoreApplication::translate("Publisher", text);
}
} // namespace

AboutBlock::AboutBlock(QWidget *parent)
    : QWidget(parent)
{
    auto *appIcon = new AppIconView(loadedAppIcon(), this);

    auto *name = new QLabel(Publisher::applicationName, this);
    setTextSize(*name, nameSize, QFont::DemiBold);
    auto *version = new TintedLabel(
        SettingsView::versionText(Bundle::main().information(u"CFBundleShortVersionString"_s)),
        FormColors::tertiaryLabel, this);
    setTextSize(*version, smallTextSize);
    auto *credit =
        new TintedLabel(publishersText(Publisher::creditLine), FormColors::secondaryLabel, this);
    setTextSize(*credit, textSize);
    auto *link = new LinkButton(Publisher::webSiteName, Publisher::webSiteAddress, this);
    setTextSize(*link, textSize);
    auto *notice =
        new TintedLabel(publishersText(Publisher::noticeLine), FormColors::tertiaryLabel, this);
    setTextSize(*notice, smallTextSize);

    auto *title = new QHBoxLayout;
    title->setSpacing(versionGap);
    title->addWidget(name, 0, Qt::AlignVCenter);
    title->addWidget(version, 0, Qt::AlignVCenter);
    title->addStretch();

    auto *column = new QVBoxLayout;
    column->setSpacing(lineGap);
    column->addLayout(title);
    column->addWidget(credit);
    column->addWidget(link, 0, Qt::AlignLeading);
    column->addWidget(notice);

    auto *row = new QHBoxLayout(this);
    row->setSpacing(iconGap);
    row->setContentsMargins(FormSection::rowInset, FormSection::rowInset / 2 + padding,
                            FormSection::rowInset, FormSection::rowInset / 2 + padding);
    row->addWidget(appIcon, 0, Qt::AlignVCenter);
    row->addLayout(column, 1);
}
