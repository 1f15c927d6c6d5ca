// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

class QVBoxLayout;

/// A section of a grouped form: a header, and beneath it rows on a rounded card, parted by
/// hairlines.
class FormSection : public QWidget
{
    Q_OBJECT

public:
    explicit FormSection(const QString &header, QWidget *parent = nullptr);

    /// Adds `row` below the others and takes it over.
    void addRow(QWidget *row);
    /// Takes a row out and destroys it.
    void removeRow(QWidget *row);

    /// The space between the card's edge and what stands in a row, in points.
    static constexpr int rowInset = 12;
    /// What a row is at least high, in points.
    static constexpr int rowHeight = 36;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void updateHeader();
    QFont headerFont() const;
    QRect cardRect() const;

    QString m_header;
    QVBoxLayout *m_rows;
};
