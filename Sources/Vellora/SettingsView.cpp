// SPDX-License-Identifier: MIT
#include "SettingsView.h"

#include "AboutBlock.h"
#include "FormSection.h"
#include "MissingStatusItem.h"
#include "PickerRow.h"
#include "PlainButton.h"
#include "Platform/Platform.h"
#include "Platform/SystemSymbol.h"
#include "SegmentedPicker.h"
#include "Settings.h"
#include "ToggleSwitch.h"
#include "Updater.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
// In points.
constexpr QSize minimumFormSize(320, 380);
constexpr int margin = 16;
constexpr int sectionSpacing = 16;
constexpr QSize recorderSize(160, 24);
constexpr int updateTextSize = 12;
constexpr int updatePadding = 4;
constexpr int textPadding = 8;
} // namespace

SettingsView::SettingsView(Settings &settings, Updater *updater, QWidget *parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_updater(updater)
    , m_recorderView{[this] { return m_settings.hotkeyString(); },
                     [this](const QString &text) {
                         m_settings.setHotkeyString(text);
                     }}
{
    auto *sections = new QVBoxLayout(this);
    sections->setContentsMargins(margin, margin, margin, margin);
    sections->setSpacing(sectionSpacing);
    addMissingStatusItem();
    addOutput();
    addCapture();
    addKeyboardShortcut();
    addGeneral();
    addAbout();
    sections->addStretch();
    connect(&m_settings, &Settings::objectWillChange, this, &SettingsView::settingsWillChange);
    connect(&Platform::current().keyTap->givenKeys(), &GivenKeys::changed, this,
            &SettingsView::showGivenKeys);
    connect(&Platform::current().statusBar->exposure(), &StatusItemExposure::changed, this,
            &SettingsView::showMissingStatusItem);
    rebuild();
}

FormSection *SettingsView::addSection(const QString &header)
{
    auto *section = new FormSection(header, this);
    static_cast<QVBoxLayout *>(layout())->addWidget(section);
    return section;
}

void SettingsView::addMissingStatusItem()
{
    m_missingSection = addSection(tr("Status Item"));
    m_missingText = makeTextRow(m_missingSection);
    m_missingSection->addRow(m_missingText);
    showMissingStatusItem();
}

void SettingsView::showMissingStatusItem()
{
    m_missingSection->setVisible(MissingStatusItem::isMissing());
    m_missingText->setText(MissingStatusItem::message());
}

template <bool (Settings::*value)() const, void (Settings::*assign)(bool)>
void SettingsView::bind(ToggleSwitch *control)
{
    // Not the click: screen readers toggle without one.
    connect(control, &QCheckBox::toggled, &m_settings, [this](bool on) {
        if (on != (m_settings.*value)()) {
            (m_settings.*assign)(on);
        }
    });
}

void SettingsView::addOutput()
{
    FormSection *section = addSection(tr("Output"));
    QStringList titles;
    std::ranges::transform(allOutputModes, std::back_inserter(titles), displayTitle);
    m_outputMode = new SegmentedPicker(titles, section);
    connect(m_outputMode, &SegmentedPicker::selected, this, [this](int index) {
        m_settings.setOutputMode(allOutputModes.at(static_cast<std::size_t>(index)));
    });
    section->addRow(new PickerRow(tr("After &OCR"), m_outputMode, section));
}

void SettingsView::addCapture()
{
    FormSection *section = addSection(tr("Capture"));
    m_shutterSound = new ToggleSwitch(tr("&Shutter sound"), section);
    bind<&Settings::shutterSound, &Settings::setShutterSound>(m_shutterSound);
    section->addRow(m_shutterSound);
    m_showNotification = new ToggleSwitch(tr("Show &notification when copied"), section);
    bind<&Settings::showNotification, &Settings::setShowNotification>(m_showNotification);
    section->addRow(m_showNotification);
}

void SettingsView::addKeyboardShortcut()
{
    m_shortcutSection = addSection(tr("Keyboard Shortcut"));
    m_hotkeyEnabled = new ToggleSwitch(tr("&Enable global hotkey"), m_shortcutSection);
    bind<&Settings::hotkeyEnabled, &Settings::setHotkeyEnabled>(m_hotkeyEnabled);
    m_shortcutSection->addRow(m_hotkeyEnabled);
}

QWidget *SettingsView::makeShortcutRow()
{
    auto *row = new QWidget(m_shortcutSection);
    auto *label = new QLabel(tr("Shor&tcut:"), row);
    m_recorder = m_recorderView.makeView(row);
    m_recorder->setFixedSize(recorderSize);
    label->setBuddy(m_recorder);
    auto *line = new QHBoxLayout(row);
    line->setContentsMargins(FormSection::rowInset, 0, FormSection::rowInset, 0);
    line->addStrut(FormSection::rowHeight);
    line->addWidget(label);
    line->addStretch();
    line->addWidget(m_recorder, 0, Qt::AlignCenter);
    setTabOrder(m_hotkeyEnabled, m_recorder);
    setTabOrder(m_recorder, m_launchAtLogin);
    return row;
}

QLabel *SettingsView::makeTextRow(FormSection *section)
{
    auto *row = new QLabel(section);
    // What the desktop says is no markup, though it may look like some.
    row->setTextFormat(Qt::PlainText);
    row->setWordWrap(true);
    // There may be a command in it.
    row->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->setContentsMargins(FormSection::rowInset, textPadding, FormSection::rowInset, textPadding);
    return row;
}

void SettingsView::showGivenKeys()
{
    const GivenKeys &given = Platform::current().keyTap->givenKeys();
    const QString keys = given.description();
    if (!m_shortcutRow || (keys.isEmpty() && given.problem().isEmpty())) {
        if (m_givenKeysRow) {
            m_shortcutSection->removeRow(m_givenKeysRow);
            m_givenKeysRow = nullptr;
        }
        return;
    }
    if (!m_givenKeysRow) {
        m_givenKeysRow = makeTextRow(m_shortcutSection);
        m_shortcutSection->addRow(m_givenKeysRow);
    }
    m_givenKeysRow->setText(given.problem().isEmpty() ? tr("The desktop listens to: %1").arg(keys)
                                                      : given.problem());
}

void SettingsView::addGeneral()
{
    FormSection *section = addSection(tr("General"));
    m_launchAtLogin = new ToggleSwitch(tr("&Launch at login"), section);
    bind<&Settings::launchAtLogin, &Settings::setLaunchAtLogin>(m_launchAtLogin);
    section->addRow(m_launchAtLogin);
}

void SettingsView::addAbout()
{
    FormSection *section = addSection(tr("About"));
    section->addRow(new AboutBlock(section));
    if (!m_updater) {
        return;
    }
    auto *button = new PlainButton(tr("Check for &Updates"), section);
    QFont font = button->font();
    font.setPixelSize(updateTextSize);
    button->setFont(font);
    button->setSymbol(systemSymbol(u"arrow.triangle.2.circlepath"_s, QString()).data);
    connect(button, &QPushButton::clicked, this, [this] { m_updater->checkForUpdates(); });

    auto *row = new QWidget(section);
    auto *line = new QHBoxLayout(row);
    line->setContentsMargins(FormSection::rowInset, updatePadding, FormSection::rowInset, 0);
    line->addStrut(FormSection::rowHeight - updatePadding);
    line->addWidget(button);
    line->addStretch();
    section->addRow(row);
}

QSize SettingsView::minimumSizeHint() const
{
    return layout()->minimumSize().expandedTo(minimumFormSize);
}

QString SettingsView::versionText(const std::optional<QString> &version)
{
    return u'v' + version.value_or(u"?"_s);
}

void SettingsView::settingsWillChange()
{
    if (std::exchange(m_rebuildPending, true)) {
        return;
    }
    // The store holds the new value only once everybody has been told.
    QMetaObject::invokeMethod(this, &SettingsView::rebuild, Qt::QueuedConnection);
}

void SettingsView::rebuild()
{
    m_rebuildPending = false;
    const auto mode = std::ranges::find(allOutputModes, m_settings.outputMode());
    m_outputMode->setSelectedIndex(static_cast<int>(mode - allOutputModes.begin()));
    m_shutterSound->setChecked(m_settings.shutterSound());
    m_showNotification->setChecked(m_settings.showNotification());
    m_hotkeyEnabled->setChecked(m_settings.hotkeyEnabled());
    m_launchAtLogin->setChecked(m_settings.launchAtLogin());

    if (!m_settings.hotkeyEnabled()) {
        if (m_shortcutRow) {
            m_shortcutSection->removeRow(m_shortcutRow);
            m_shortcutRow = nullptr;
            m_recorder = nullptr;
        }
    } else if (m_recorder) {
        m_recorderView.updateView(*m_recorder);
    } else {
        m_shortcutRow = makeShortcutRow();
        m_shortcutSection->addRow(m_shortcutRow);
    }
    showGivenKeys();
}
