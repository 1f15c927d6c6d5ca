// SPDX-License-Identifier: MIT
// Where the files of sounds are found: the user's theme, what it builds on, "freedesktop" last.

#include "Platform/Freedesktop/SoundTheme.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class SoundThemeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void themeComesFirst();
    void parentsAreAsked();
    void freedesktopEndsEveryChain();
    void userFolderComesBeforeTheSystem();
    void vorbisBeforeWave();
    void silencedSoundIsSilence();
    void loopsEnd();
    void hostileNames_data();
    void hostileNames();
    void userThemeFromSettingsFiles();

private:
    void put(const QString &path, const QByteArray &content = "x") const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    void putTheme(const QString &root, const QString &name, const QByteArray &parents) const
    {
        put(root + u'/' + name + u"/index.theme"_s,
            "[Sound Theme]\nName=T\nDirectories=surround,stereo\nInherits=" + parents +
                "\n[surround]\nOutputProfile=5.1\n[stereo]\nOutputProfile=stereo\n");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_user;
    QString m_system;
};

void SoundThemeTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_user = m_folder->filePath(u"home/sounds"_s);
    m_system = m_folder->filePath(u"system/sounds"_s);
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder->filePath(u"home"_s)));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(m_folder->filePath(u"system"_s)));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder->filePath(u"config"_s)));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(m_folder->filePath(u"nothing"_s)));
    putTheme(m_system, u"freedesktop"_s, "");
    put(m_system + u"/freedesktop/stereo/camera-shutter.oga"_s);
}

void SoundThemeTest::themeComesFirst()
{
    putTheme(m_system, u"mine"_s, "freedesktop");
    put(m_system + u"/mine/surround/camera-shutter.oga"_s);
    put(m_system + u"/mine/stereo/camera-shutter.oga"_s);
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, u"mine"_s),
             m_system + u"/mine/stereo/camera-shutter.oga"_s);
}

void SoundThemeTest::parentsAreAsked()
{
    putTheme(m_system, u"mine"_s, "first,second");
    putTheme(m_system, u"first"_s, "grandparent");
    putTheme(m_system, u"second"_s, "");
    putTheme(m_system, u"grandparent"_s, "freedesktop");
    put(m_system + u"/second/stereo/camera-shutter.oga"_s);
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, u"mine"_s),
             m_system + u"/second/stereo/camera-shutter.oga"_s);
    put(m_system + u"/grandparent/stereo/camera-shutter.oga"_s);
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, u"mine"_s),
             m_system + u"/grandparent/stereo/camera-shutter.oga"_s);
}

void SoundThemeTest::freedesktopEndsEveryChain()
{
    const QString shutter = m_system + u"/freedesktop/stereo/camera-shutter.oga"_s;
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, {}), shutter);
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, u"not installed"_s), shutter);
    QCOMPARE(SoundTheme::file(u"screen-capture"_s, {}), QString());
}

void SoundThemeTest::userFolderComesBeforeTheSystem()
{
    putTheme(m_user, u"freedesktop"_s, "");
    put(m_user + u"/freedesktop/stereo/camera-shutter.wav"_s);
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, {}),
             m_user + u"/freedesktop/stereo/camera-shutter.wav"_s);
}

void SoundThemeTest::vorbisBeforeWave()
{
    put(m_system + u"/freedesktop/stereo/bell.wav"_s);
    QCOMPARE(SoundTheme::file(u"bell"_s, {}), m_system + u"/freedesktop/stereo/bell.wav"_s);
    put(m_system + u"/freedesktop/stereo/bell.ogg"_s);
    QCOMPARE(SoundTheme::file(u"bell"_s, {}), m_system + u"/freedesktop/stereo/bell.ogg"_s);
}

void SoundThemeTest::silencedSoundIsSilence()
{
    putTheme(m_system, u"mine"_s, "freedesktop");
    put(m_system + u"/mine/stereo/camera-shutter.disabled"_s, "");
    const QString file = SoundTheme::file(u"camera-shutter"_s, u"mine"_s);
    // Found like any other, so that nobody looks for another sound to play in its place.
    QCOMPARE(file, m_system + u"/mine/stereo/camera-shutter.disabled"_s);
    QVERIFY(SoundTheme::isSilenced(file));
    QVERIFY(!SoundTheme::isSilenced(m_system + u"/freedesktop/stereo/camera-shutter.oga"_s));
}

void SoundThemeTest::loopsEnd()
{
    putTheme(m_system, u"a"_s, "b,freedesktop");
    putTheme(m_system, u"b"_s, "a,b");
    QCOMPARE(SoundTheme::file(u"camera-shutter"_s, u"a"_s),
             m_system + u"/freedesktop/stereo/camera-shutter.oga"_s);
}

void SoundThemeTest::hostileNames_data()
{
    QTest::addColumn<QString>("theme");
    QTest::newRow("up") << u"../sounds/freedesktop"_s;
    QTest::newRow("sideways") << u"freedesktop/../../../elsewhere"_s;
}

void SoundThemeTest::hostileNames()
{
    QFETCH(const QString, theme);
    putTheme(m_folder->path(), u"elsewhere"_s, "");
    put(m_folder->filePath(u"elsewhere/stereo/screen-capture.oga"_s));
    QCOMPARE(SoundTheme::file(u"screen-capture"_s, theme), QString());
}

void SoundThemeTest::userThemeFromSettingsFiles()
{
    QCOMPARE(SoundTheme::userTheme(), QString());
    put(m_folder->filePath(u"config/gtk-3.0/settings.ini"_s),
        "[Settings]\ngtk-sound-theme-name=mine\n");
    QCOMPARE(SoundTheme::userTheme(), u"mine"_s);
    put(m_folder->filePath(u"config/kdeglobals"_s), "[Sounds]\nTheme=ocean\n");
    QCOMPARE(SoundTheme::userTheme(), u"ocean"_s);
}

QTEST_GUILESS_MAIN(SoundThemeTest)
#include "SoundThemeTest.moc"
