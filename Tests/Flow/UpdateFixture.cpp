// SPDX-License-Identifier: MIT
#include "UpdateFixture.h"

#include <QApplication>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;

void UpdateFixture::init()
{
    QCoreApplication::setApplicationVersion(u"0.1.0"_s);
    m_platform = std::make_unique<FakePlatform>();
    m_updater = std::make_unique<Updater>();
}

void UpdateFixture::cleanup()
{
    m_updater.reset();
    m_platform.reset();
}

QDialog *UpdateFixture::window()
{
    for (QWidget *each : QApplication::topLevelWidgets()) {
        auto *dialog = qobject_cast<QDialog *>(each);
        if (dialog && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

QPushButton *UpdateFixture::button(const QString &text)
{
    for (auto *each : window()->findChildren<QPushButton *>()) {
        if (each->isVisible() && each->text().remove(u'&') == text) {
            return each;
        }
    }
    return nullptr;
}

QStringList UpdateFixture::texts()
{
    QStringList found;
    for (const auto *each : window()->findChildren<QLabel *>()) {
        if (each->isVisible()) {
            found << each->text();
        }
    }
    for (const auto *each : window()->findChildren<QPlainTextEdit *>()) {
        if (each->isVisible()) {
            found << each->toPlainText();
        }
    }
    return found;
}

QStringList UpdateFixture::buttons()
{
    QStringList found;
    for (const auto *each : window()->findChildren<QPushButton *>()) {
        if (each->isVisible()) {
            found << each->text().remove(u'&');
        }
    }
    return found;
}

Update UpdateFixture::newVersion()
{
    Update update;
    update.id = u"vellora;0.2.0-1;all;vellora-stable-"_s;
    update.version = u"0.2.0-1"_s;
    update.notes = u"Reads faster."_s;
    return update;
}

UpdateResult UpdateFixture::available(const Update &update)
{
    return {UpdateResult::Kind::Available, update, {}};
}

UpdateResult UpdateFixture::ended(UpdateResult::Kind kind)
{
    return {kind, {}, {}};
}

UpdateResult UpdateFixture::failed(UpdateProblem problem, const QString &details,
                                   const QString &command)
{
    return {UpdateResult::Kind::Failed, {}, {problem, details, command}};
}
