// SPDX-License-Identifier: MIT
// Reads the #include lines of the sources: the program knows the desktop's interfaces only, a
// mechanism never knows the program, and each system library stays in the folder that wraps it.

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Headers of one system library, and the folders below Sources that may include them.
struct Family
{
    QRegularExpression headers;
    QStringList folders;
};

const QList<Family> &families()
{
    static const QList<Family> list{
        {QRegularExpression(u"^(xcb/|X11/|xkbcommon/xkbcommon-x11)"_s), {u"Platform/X11"_s}},
        {QRegularExpression(u"^xkbcommon/xkbcommon(-keysyms|-names)?\\.h"_s),
         {u"Platform/X11"_s, u"Platform/Wayland"_s}},
        {QRegularExpression(u"^(wayland-|qpa/|QtGui/(\\d[\\d.]*/)?.*qplatform)"_s),
         {u"Platform/Wayland"_s, u"Platform/X11"_s}},
        {QRegularExpression(u"^(QDBus|QtDBus|dbus/|gio/)"_s),
         {u"Platform/Freedesktop"_s, u"Platform/KDE"_s, u"Platform/GNOME"_s, u"Platform/Portal"_s,
          u"Platform/PackageKit"_s, u"Platform/Flatpak"_s}},
        {QRegularExpression(u"^(canberra|pulse/|alsa/)"_s),
         {u"Platform/Freedesktop"_s, u"Platform/Canberra"_s}},
        // The program speaks to nobody outside the machine.
        {QRegularExpression(u"^(QtNetwork|QNetwork|QTcp|QUdp|QSsl|QAbstractSocket|QHostAddress|"
                            "QWebSocket|netinet/|arpa/|netdb\\.h|curl/|libsoup)"_s),
         {}},
        // Models are read without it.
        {QRegularExpression(u"^(tesseract/|leptonica/|allheaders\\.h)"_s), {}},
    };
    return list;
}

bool isIn(const QString &path, const QString &folder)
{
    return path.startsWith(folder + u'/');
}

/// Why the file at `path` (relative to Sources) may not include `header`; empty if it may.
QString objection(const QString &path, const QString &header, bool quoted)
{
    for (const Family &family : families()) {
        if (!family.headers.match(header).hasMatch()) {
            continue;
        }
        const bool allowed = std::any_of(family.folders.cbegin(), family.folders.cend(),
                                         [&](const QString &folder) { return isIn(path, folder); });
        return allowed                    ? QString()
               : family.folders.isEmpty() ? u"belongs nowhere"_s
                                          : u"belongs in "_s + family.folders.join(u", "_s);
    }

    const bool isInterface = QRegularExpression(u"^Platform/[^/]+\\.h$"_s).match(header).hasMatch();
    const bool isMechanism = header.startsWith("Platform/"_L1) && !isInterface;
    const bool isRecognition = header.startsWith("TextRecognition/"_L1);
    const bool isProgram = header.startsWith("Vellora/"_L1);

    if (isIn(path, u"Vellora"_s)) {
        if (isMechanism || isRecognition) {
            return u"the program includes interfaces only"_s;
        }
        if (!quoted && header.endsWith(".h"_L1)) {
            return u"the program includes Qt and the standard library only"_s;
        }
        return {};
    }
    if (isProgram) {
        return u"what serves the program does not know it"_s;
    }
    if (isIn(path, u"TextRecognition"_s) && isMechanism) {
        return u"the recognizer knows no desktop"_s;
    }
    if (isIn(path, u"VelloraRead"_s) && isMechanism) {
        return u"pictures in files are read without a desktop"_s;
    }
    if (isIn(path, u"Platform"_s)) {
        const bool isMechanismFile = path.count(u'/') > 1;
        const bool isHeader = path.endsWith(".h"_L1);
        if (isMechanismFile && isRecognition) {
            return u"only the choice of mechanisms knows the recognizer"_s;
        }
        if (!isMechanismFile && isHeader && (isMechanism || isRecognition)) {
            return u"an interface does not know its implementations"_s;
        }
    }
    return {};
}

/// One line for each line of `content` that breaks a rule; `path` is relative to Sources.
QStringList violations(const QString &path, const QString &content)
{
    static const QRegularExpression include(u"^\\s*#\\s*include\\s*([<\"])([^>\"]+)[>\"]"_s);
    static const QRegularExpression system(u"^\\s*#\\s*(if|ifdef|ifndef|elif)\\b.*\\bQ_OS_"_s);
    QStringList found;
    const QStringList lines = content.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString why;
        if (const auto match = include.match(lines[i]); match.hasMatch()) {
            why = objection(path, match.captured(2), match.captured(1) == u'"');
        } else if (system.match(lines[i]).hasMatch() && !isIn(path, u"Platform"_s)) {
            why = u"only Platform differs between systems"_s;
        }
        if (!why.isEmpty()) {
            found << u"%1:%2: %3: %4"_s.arg(path).arg(i + 1).arg(lines[i].trimmed(), why);
        }
    }
    return found;
}

} // namespace

class DependencyRuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sourcesFollowTheRule();
    void violationsAreFound_data();
    void violationsAreFound();
};

void DependencyRuleTest::sourcesFollowTheRule()
{
    const QDir root(QStringLiteral(VELLORA_SOURCES));
    QStringList found;
    int files = 0;
    QDirIterator it(root.path(), {u"*.h"_s, u"*.cpp"_s, u"*.in"_s}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        found << violations(root.relativeFilePath(file.fileName()),
                            QString::fromUtf8(file.readAll()));
        ++files;
    }
    QVERIFY2(files > 20, "the sources were not found");
    QVERIFY2(found.isEmpty(), qPrintable(u'\n' + found.join(u'\n')));
}

void DependencyRuleTest::violationsAreFound_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("allowed");

    const auto row = [](const char *name, const QString &path, const QString &line, bool allowed) {
        QTest::newRow(name) << path << line << allowed;
    };
    row("program, interface", u"Vellora/A.cpp"_s, u"#include \"Platform/Screens.h\""_s, true);
    row("program, own", u"Vellora/A.cpp"_s, u"#include \"Settings.h\""_s, true);
    row("program, Qt", u"Vellora/A.cpp"_s, u"#include <QWidget>"_s, true);
    row("program, standard", u"Vellora/A.cpp"_s, u"#include <memory>"_s, true);
    row("program, mechanism", u"Vellora/A.cpp"_s, u"#include \"Platform/X11/XcbOverlay.h\""_s,
        false);
    row("program, recognizer", u"Vellora/A.cpp"_s, u"#include \"TextRecognition/Tesseract.h\""_s,
        false);
    row("program, xcb", u"Vellora/A.cpp"_s, u"  #  include <xcb/xcb.h>"_s, false);
    row("program, D-Bus", u"Vellora/A.h"_s, u"#include <QDBusConnection>"_s, false);
    row("program, system", u"Vellora/A.cpp"_s, u"#include <unistd.h>"_s, false);
    row("program, Q_OS", u"Vellora/A.cpp"_s, u"#ifdef Q_OS_LINUX"_s, false);
    row("program, defined Q_OS", u"Vellora/A.cpp"_s, u"#if defined(Q_OS_MACOS)"_s, false);
    row("recognizer, Tesseract", u"TextRecognition/A.cpp"_s, u"#include <tesseract/baseapi.h>"_s,
        false);
    row("recognizer, Leptonica", u"TextRecognition/Network/A.cpp"_s,
        u"#include <leptonica/allheaders.h>"_s, false);
    row("recognizer, interface", u"TextRecognition/A.h"_s,
        u"#include \"Platform/TextRecognizer.h\""_s, true);
    row("recognizer, mechanism", u"TextRecognition/A.cpp"_s,
        u"#include \"Platform/X11/XcbOverlay.h\""_s, false);
    row("recognizer, program", u"TextRecognition/A.cpp"_s, u"#include \"Vellora/Settings.h\""_s,
        false);
    row("reader, recognizer", u"VelloraRead/A.cpp"_s, u"#include \"TextRecognition/Tesseract.h\""_s,
        true);
    row("reader, mechanism", u"VelloraRead/A.cpp"_s, u"#include \"Platform/X11/XcbOverlay.h\""_s,
        false);
    row("reader, program", u"VelloraRead/A.cpp"_s, u"#include \"Vellora/Settings.h\""_s, false);
    row("mechanism, network", u"Platform/Freedesktop/A.cpp"_s, u"#include <QNetworkRequest>"_s,
        false);
    row("program, network", u"Vellora/A.cpp"_s, u"#include <QTcpSocket>"_s, false);
    row("mechanism, own", u"Platform/X11/A.cpp"_s, u"#include <xcb/shm.h>"_s, true);
    row("mechanism, program", u"Platform/X11/A.cpp"_s, u"#include \"Vellora/Settings.h\""_s, false);
    row("mechanism, another's", u"Platform/Freedesktop/A.cpp"_s, u"#include <xcb/xcb.h>"_s, false);
    row("mechanism, Tesseract", u"Platform/X11/A.cpp"_s, u"#include <tesseract/baseapi.h>"_s,
        false);
    row("mechanism, recognizer", u"Platform/X11/A.cpp"_s,
        u"#include \"TextRecognition/Tesseract.h\""_s, false);
    row("mechanism, Q_OS", u"Platform/X11/A.cpp"_s, u"#ifdef Q_OS_LINUX"_s, true);
    row("sound", u"Platform/Freedesktop/A.cpp"_s, u"#include <canberra.h>"_s, true);
    row("sound elsewhere", u"Platform/X11/A.cpp"_s, u"#include <canberra.h>"_s, false);
    row("interface, mechanism", u"Platform/A.h"_s, u"#include \"Platform/X11/XcbOverlay.h\""_s,
        false);
    row("choice of mechanisms", u"Platform/A.cpp"_s, u"#include \"Platform/X11/XcbOverlay.h\""_s,
        true);
    row("choice of mechanisms, recognizer", u"Platform/A.cpp"_s,
        u"#include \"TextRecognition/Tesseract.h\""_s, true);
}

void DependencyRuleTest::violationsAreFound()
{
    QFETCH(QString, path);
    QFETCH(QString, line);
    QFETCH(bool, allowed);
    const QStringList found = violations(path, u"#include <QString>\n%1\n"_s.arg(line));
    QCOMPARE(found.size(), allowed ? 0 : 1);
    if (!allowed) {
        QVERIFY2(found.constFirst().startsWith(path + ":2: "_L1), qPrintable(found.constFirst()));
    }
}

QTEST_GUILESS_MAIN(DependencyRuleTest)
#include "DependencyRuleTest.moc"
