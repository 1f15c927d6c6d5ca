// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QPushButton>

/// A button without a bezel: a symbol and a text. Pressed, it is paler.
class PlainButton : public QPushButton
{
    Q_OBJECT

public:
    explicit PlainButton(const QString &text, QWidget *parent = nullptr);

    /// A picture of one colour, drawn in that of the text at its leading edge; from an SVG or PNG
    /// file's content.
    void setSymbol(const QByteArray &picture);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

    virtual QColor textColor() const;

private:
    QImage m_symbol;
};

/// A plain button that looks like a link, and opens an address in the user's browser.
class LinkButton : public PlainButton
{
    Q_OBJECT

public:
    LinkButton(const QString &text, const QString &address, QWidget *parent = nullptr);

protected:
    QColor textColor() const override;
};
