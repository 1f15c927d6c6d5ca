// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRadioButton>
#include <QStringList>
#include <QWidget>

/// A choice of one of several titles that stand in one rounded control, side by side.
class SegmentedPicker : public QWidget
{
    Q_OBJECT

public:
    explicit SegmentedPicker(const QStringList &titles, QWidget *parent = nullptr);

    /// Selects without emitting `selected`.
    void setSelectedIndex(int index);

Q_SIGNALS:
    /// The user has selected another segment.
    void selected(int index);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    class Segment;

    /// Selects and focuses the segment that lies `steps` further in reading direction, if any.
    void move(int steps);

    QList<Segment *> m_segments;
    /// What `selected` was emitted for last, or was set.
    int m_selected = -1;
};
