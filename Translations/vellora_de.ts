<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AppDelegate</name>
    <message>
        <source>Empty selection</source>
        <translation>Leere Auswahl</translation>
    </message>
    <message>
        <source>No text found</source>
        <translation>Kein Text gefunden</translation>
    </message>
    <message>
        <source>OCR error: </source>
        <translation>Fehler bei der Texterkennung: </translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Permission needed</source>
        <translation>Berechtigung erforderlich</translation>
    </message>
    <message>
        <source>Screen Recording permission not granted — left-click to try again</source>
        <translation>Die Berechtigung zur Bildschirmaufnahme fehlt — Linksklick für einen neuen Versuch</translation>
    </message>
    <message>
        <source>Capture Text</source>
        <translation>Text aufnehmen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Quit Vellora</source>
        <translation>Vellora beenden</translation>
    </message>
    <message>
        <source>Left-click to capture text · Right-click for menu</source>
        <translation>Linksklick: Text aufnehmen · Rechtsklick: Menü</translation>
    </message>
</context>
<context>
    <name>DesktopPlatform</name>
    <message>
        <source>%1 cannot see this screen: it works on X11 desktops, and this session is shown by “%2”. Log in to an X11 session (often called “Xorg” on the login screen).</source>
        <translation>%1 kann diesen Bildschirm nicht sehen: Es arbeitet auf X11-Desktops, und diese Sitzung wird von „%2“ dargestellt. Melden Sie sich in einer X11-Sitzung an (auf dem Anmeldebildschirm oft „Xorg“ genannt).</translation>
    </message>
    <message>
        <source>%1 cannot work on this Wayland desktop. %2 Log in to an X11 session (often called “Xorg” on the login screen), or to GNOME, Plasma or sway.</source>
        <translation>%1 kann auf diesem Wayland-Desktop nicht arbeiten. %2 Melden Sie sich in einer X11-Sitzung an (auf dem Anmeldebildschirm oft „Xorg“ genannt), oder in GNOME, Plasma oder sway.</translation>
    </message>
    <message>
        <source>The desktop lets no program see the screen (zwlr_screencopy_manager_v1, ext_image_copy_capture_manager_v1, org.kde.KWin.ScreenShot2, org.freedesktop.portal.Screenshot).</source>
        <translation>Der Desktop lässt kein Programm den Bildschirm sehen (zwlr_screencopy_manager_v1, ext_image_copy_capture_manager_v1, org.kde.KWin.ScreenShot2, org.freedesktop.portal.Screenshot).</translation>
    </message>
    <message>
        <source>%1 was started as an X11 program on a Wayland desktop, which shows those nothing of the screen. %2 Start it with WAYLAND_DISPLAY set and without QT_QPA_PLATFORM.</source>
        <translation>%1 wurde als X11-Programm auf einem Wayland-Desktop gestartet, und solchen zeigt der nichts vom Bildschirm. %2 Starten Sie es mit gesetztem WAYLAND_DISPLAY und ohne QT_QPA_PLATFORM.</translation>
    </message>
</context>
<context>
    <name>GlobalAccelKey</name>
    <message>
        <source>Capture Text</source>
        <translation>Text aufnehmen</translation>
    </message>
</context>
<context>
    <name>HotkeyRecorderField</name>
    <message>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>Type shortcut…</source>
        <translation>Kürzel drücken …</translation>
    </message>
    <message>
        <source>Press the new shortcut, or Escape to keep the old one.</source>
        <translation>Drücken Sie das neue Tastenkürzel oder Escape, um das alte zu behalten.</translation>
    </message>
    <message>
        <source>%1. Press Space to record another shortcut.</source>
        <translation>%1. Mit der Leertaste nehmen Sie ein anderes Tastenkürzel auf.</translation>
    </message>
    <message>
        <source>On this keyboard, the key with “%1”</source>
        <translation>Auf dieser Tastatur die Taste mit „%1“</translation>
    </message>
</context>
<context>
    <name>HotkeyString</name>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>Steuerung</translation>
    </message>
    <message>
        <source>Option</source>
        <translation>Option</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Quit Vellora</source>
        <translation>Vellora beenden</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>OCRService</name>
    <message>
        <source>There is not enough memory to read the picture. Close some programs and try again.</source>
        <translation>Der Speicher reicht nicht aus, um das Bild zu lesen. Schließen Sie einige Programme und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>The system cannot start any more work. Close some programs and try again.</source>
        <translation>Das System kann keine weitere Arbeit beginnen. Schließen Sie einige Programme und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Reading the picture failed unexpectedly.</source>
        <translation>Das Lesen des Bildes ist unerwartet fehlgeschlagen.</translation>
    </message>
</context>
<context>
    <name>OutputMode</name>
    <message>
        <source>Clipboard Only</source>
        <translation>Nur Ablage</translation>
    </message>
    <message>
        <source>Popup Only</source>
        <translation>Nur Fenster</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beides</translation>
    </message>
</context>
<context>
    <name>Publisher</name>
    <message>
        <source>Developed by the Vellora Project</source>
        <translation>Entwickelt vom Vellora-Projekt</translation>
    </message>
    <message>
        <source>© 2026 The Vellora Project</source>
        <translation>© 2026 Vellora-Projekt</translation>
    </message>
</context>
<context>
    <name>ResultPanel</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Vellora — Recognized Text</source>
        <translation>Vellora — Erkannter Text</translation>
    </message>
    <message>
        <source>Recognized text</source>
        <translation>Erkannter Text</translation>
    </message>
    <message>
        <source>Copied!</source>
        <translation>Kopiert!</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>After &amp;OCR</source>
        <translation>Nach &amp;OCR</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Aufnahme</translation>
    </message>
    <message>
        <source>&amp;Shutter sound</source>
        <translation>&amp;Auslöserton</translation>
    </message>
    <message>
        <source>Show &amp;notification when copied</source>
        <translation>&amp;Hinweis beim Kopieren anzeigen</translation>
    </message>
    <message>
        <source>Keyboard Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;Enable global hotkey</source>
        <translation>&amp;Globales Tastenkürzel einschalten</translation>
    </message>
    <message>
        <source>Shor&amp;tcut:</source>
        <translation>&amp;Tastenkürzel:</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>&amp;Launch at login</source>
        <translation>Bei der Anmeldung &amp;starten</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Check for &amp;Updates</source>
        <translation>Nach &amp;Updates suchen</translation>
    </message>
    <message>
        <source>The desktop listens to: %1</source>
        <translation>Der Desktop hört auf: %1</translation>
    </message>
</context>
<context>
    <name>SettingsWindowController</name>
    <message>
        <source>Vellora Settings</source>
        <translation>Vellora-Einstellungen</translation>
    </message>
</context>
<context>
    <name>TesseractTextRecognizer</name>
    <message>
        <source>No language models are installed for text recognition. Install a package such as tesseract-ocr-eng, or put trained data into %1.</source>
        <translation>Es sind keine Sprachmodelle für die Texterkennung installiert. Installieren Sie ein Paket wie tesseract-ocr-eng oder legen Sie trainierte Daten in %1 ab.</translation>
    </message>
    <message>
        <source>The language model “%1” is damaged. Install its package again.</source>
        <translation>Das Sprachmodell „%1“ ist beschädigt. Installieren Sie sein Paket erneut.</translation>
    </message>
    <message>
        <source>The language models %1 are damaged. Install their packages again.</source>
        <translation>Die Sprachmodelle %1 sind beschädigt. Installieren Sie ihre Pakete erneut.</translation>
    </message>
</context>
<context>
    <name>UninstalledUpdater</name>
    <message>
        <source>%1 Update</source>
        <translation>%1-Aktualisierung</translation>
    </message>
    <message>
        <source>%1 cannot look for updates.</source>
        <translation>%1 kann nicht nach Updates suchen.</translation>
    </message>
    <message>
        <source>This copy was not installed from a package source. To get a newer version, go back to where you got this one.</source>
        <translation>Dieses Exemplar wurde nicht aus einer Paketquelle installiert. Eine neuere Version bekommen Sie dort, woher Sie dieses haben.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Turns any region of the screen into text</source>
        <translation>Macht aus jedem Bereich des Bildschirms Text</translation>
    </message>
</context>
</TS>
