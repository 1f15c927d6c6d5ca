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
    <message>
        <source>Settings cannot be saved: “%1” cannot be written</source>
        <translation>Die Einstellungen können nicht gespeichert werden: „%1“ ist nicht beschreibbar</translation>
    </message>
    <message>
        <source>The desktop let no overlay cover the screen</source>
        <translation>Der Desktop ließ den Bildschirm nicht abdecken</translation>
    </message>
    <message>
        <source>The text could not be copied: the desktop gave Vellora no keyboard</source>
        <translation>Der Text konnte nicht kopiert werden: Der Desktop gab Vellora die Tastatur nicht</translation>
    </message>
    <message>
        <source>There is not enough memory. Close some programs and try again.</source>
        <translation>Es ist nicht genug Speicher frei. Schließen Sie einige Programme und versuchen Sie es erneut.</translation>
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
    <name>GlobalHotkey</name>
    <message>
        <source>This shortcut does not work here: another program or the desktop has it. Choose another one.</source>
        <translation>Dieses Kürzel geht hier nicht: Ein anderes Programm oder der Desktop hat es. Wählen Sie ein anderes.</translation>
    </message>
    <message>
        <source>The desktop no longer listens to this shortcut. Switch it off and on again, or choose another one.</source>
        <translation>Der Desktop hört nicht mehr auf dieses Kürzel. Schalten Sie es aus und wieder ein, oder wählen Sie ein anderes.</translation>
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
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
</context>
<context>
    <name>KWinScreenShot</name>
    <message>
        <source>KWin shows the screen to programs with a desktop entry alone, and none names %1. Install Vellora, or start it with Scripts/run, which makes the entry.</source>
        <translation>KWin zeigt den Bildschirm nur Programmen mit einem Startereintrag, und keiner nennt %1. Installieren Sie Vellora, oder starten Sie es mit Scripts/run, das den Eintrag anlegt.</translation>
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
    <name>MissingStatusItem</name>
    <message>
        <source>This desktop shows no status item of %1. Start %1 again to capture, or turn on the shortcut below. “Settings…” in the launcher’s menu opens this window.</source>
        <translation>Diese Arbeitsumgebung zeigt kein Statussymbol von %1. Starten Sie %1 noch einmal, um Text aufzunehmen, oder schalten Sie unten das Tastenkürzel ein. „Einstellungen …“ im Menü des Starters öffnet dieses Fenster.</translation>
    </message>
    <message>
        <source>The GNOME extension “%1” shows it.</source>
        <translation>Die GNOME-Erweiterung „%1“ zeigt es.</translation>
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
    <name>PermissionWindow</name>
    <message>
        <source>%1 reads the screen only when you capture.</source>
        <translation>%1 liest den Bildschirm nur, wenn Sie etwas aufnehmen.</translation>
    </message>
    <message>
        <source>&amp;Ask Again</source>
        <translation>Noch einmal &amp;fragen</translation>
    </message>
    <message>
        <source>&amp;Not Now</source>
        <translation>&amp;Nicht jetzt</translation>
    </message>
    <message>
        <source>Your desktop now asks whether %1 may take pictures of the screen. You can change your answer in its settings.</source>
        <translation>Ihre Arbeitsumgebung fragt jetzt, ob %1 Bilder des Bildschirms aufnehmen darf. Ihre Antwort können Sie in deren Einstellungen ändern.</translation>
    </message>
    <message>
        <source>Your desktop took no answer.</source>
        <translation>Ihre Arbeitsumgebung hat keine Antwort angenommen.</translation>
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
    <name>ScreenshotPermission</name>
    <message>
        <source>It was denied; the desktop’s settings change that.</source>
        <translation>Sie wurde verweigert; die Einstellungen der Arbeitsumgebung ändern das.</translation>
    </message>
    <message>
        <source>It was denied to all programs that the desktop did not start. Start %1 from the list of applications.</source>
        <translation>Sie wurde allen Programmen verweigert, die nicht die Arbeitsumgebung gestartet hat. Starten Sie %1 aus der Liste der Anwendungen.</translation>
    </message>
    <message>
        <source>It was denied; this changes it: Settings, Applications, %1, Screenshots.</source>
        <translation>Sie wurde verweigert; hier ändern Sie das: Einstellungen, Anwendungen, %1, Bildschirmfotos.</translation>
    </message>
    <message>
        <source>The desktop’s portal was asked, and gave no picture.</source>
        <translation>Das Portal der Arbeitsumgebung wurde gefragt und gab kein Bild.</translation>
    </message>
</context>
<context>
    <name>ScreenshotQuestion</name>
    <message>
        <source>It asks only for programs that it has started itself: start %1 from the list of applications.</source>
        <translation>Sie fragt nur für Programme, die sie selbst gestartet hat: Starten Sie %1 aus der Liste der Anwendungen.</translation>
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
    <message>
        <source>Status Item</source>
        <translation>Statussymbol</translation>
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
    <name>UnboundKeyTap</name>
    <message>
        <source>This desktop lets programs bind no keys. Bind one yourself, in its settings, to: %1</source>
        <translation>Auf diesem Desktop können Programme keine Tasten belegen. Belegen Sie selbst eine, in seinen Einstellungen, mit: %1</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>Looking for updates</source>
        <translation>Suche nach Updates</translation>
    </message>
    <message>
        <source>Vellora is up to date</source>
        <translation>Vellora ist auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>A new version of Vellora is available</source>
        <translation>Eine neue Version von Vellora ist verfügbar</translation>
    </message>
    <message>
        <source>Vellora %1 is available</source>
        <translation>Vellora %1 ist verfügbar</translation>
    </message>
    <message>
        <source>Installing the new version</source>
        <translation>Die neue Version wird installiert</translation>
    </message>
    <message>
        <source>Installing Vellora %1</source>
        <translation>Vellora %1 wird installiert</translation>
    </message>
    <message>
        <source>The new version is installed</source>
        <translation>Die neue Version ist installiert</translation>
    </message>
    <message>
        <source>Vellora %1 is installed</source>
        <translation>Vellora %1 ist installiert</translation>
    </message>
    <message>
        <source>Vellora cannot look for updates.</source>
        <translation>Vellora kann nicht nach Updates suchen.</translation>
    </message>
    <message>
        <source>The update was not installed</source>
        <translation>Das Update wurde nicht installiert</translation>
    </message>
    <message>
        <source>You have version %1, and the package sources offer no newer one.</source>
        <translation>Sie haben Version %1, und die Paketquellen bieten keine neuere an.</translation>
    </message>
    <message>
        <source>You have version %1.</source>
        <translation>Sie haben Version %1.</translation>
    </message>
    <message>
        <source>It is used from the next start on.</source>
        <translation>Sie wird vom nächsten Start an verwendet.</translation>
    </message>
    <message>
        <source>This copy was not installed from a package source. To get a newer version, go back to where you got this one.</source>
        <translation>Dieses Exemplar wurde nicht aus einer Paketquelle installiert. Eine neuere Version gibt es dort, wo Sie dieses herhaben.</translation>
    </message>
    <message>
        <source>No installed package holds this copy of Vellora. To get a newer version, go back to where you got this one.</source>
        <translation>Kein installiertes Paket enthält dieses Exemplar von Vellora. Eine neuere Version gibt es dort, wo Sie dieses herhaben.</translation>
    </message>
    <message>
        <source>Its package was installed from a file, and no package source of this system has newer ones. Add Vellora’s package source, or install a newer file.</source>
        <translation>Das Paket wurde aus einer Datei installiert, und keine Paketquelle dieses Systems hat neuere. Fügen Sie die Paketquelle von Vellora hinzu oder installieren Sie eine neuere Datei.</translation>
    </message>
    <message>
        <source>There is no network. Try again once you are connected.</source>
        <translation>Es gibt keine Netzwerkverbindung. Versuchen Sie es noch einmal, sobald Sie verbunden sind.</translation>
    </message>
    <message>
        <source>There is not enough space on the disk. Delete something and try again.</source>
        <translation>Auf dem Datenträger ist nicht genug Platz. Löschen Sie etwas und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between names of packages</comment>
        <translation>, </translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <comment>names of packages</comment>
        <translation>
            <numerusform>%1 und %n weiteres</numerusform>
            <numerusform>%1 und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Also installs: %1</source>
        <translation>Installiert außerdem: %1</translation>
    </message>
    <message>
        <source>Also updates: %1</source>
        <translation>Aktualisiert außerdem: %1</translation>
    </message>
    <message>
        <source>Removes: %1</source>
        <translation>Entfernt: %1</translation>
    </message>
    <message>
        <source>Asking the package sources…</source>
        <translation>Die Paketquellen werden befragt …</translation>
    </message>
    <message>
        <source>Waiting until another installation has ended…</source>
        <translation>Warten, bis eine andere Installation beendet ist …</translation>
    </message>
    <message>
        <source>Waiting for your password…</source>
        <translation>Warten auf Ihr Passwort …</translation>
    </message>
    <message>
        <source>Downloading…</source>
        <translation>Herunterladen …</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Installieren …</translation>
    </message>
    <message>
        <source>PackageKit, the service that would look for them, is not installed or cannot be started.</source>
        <translation>PackageKit, der Dienst, der danach suchen würde, ist nicht installiert oder lässt sich nicht starten.</translation>
    </message>
    <message>
        <source>The package service ended in the middle of it. Try again.</source>
        <translation>Der Paketdienst hat sich mittendrin beendet. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The package service does not answer. It may be busy; try again later.</source>
        <translation>Der Paketdienst antwortet nicht. Vielleicht ist er beschäftigt; versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The package service gave an answer that makes no sense.</source>
        <translation>Der Paketdienst hat eine Antwort gegeben, die keinen Sinn ergibt.</translation>
    </message>
    <message>
        <source>The desktop looks for new versions of Vellora by itself, and has not told of one so far.</source>
        <translation>Der Desktop sucht selbst nach neuen Versionen von Vellora und hat bisher keine gemeldet.</translation>
    </message>
    <message>
        <source>Not every package source could be read, so there may be a newer version that is not known here. Check the network and try again.</source>
        <translation>Nicht alle Paketquellen ließen sich lesen; es kann also eine neuere Version geben, die hier nicht bekannt ist. Prüfen Sie das Netzwerk und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Another program is working on the packages. Try again when it has finished.</source>
        <translation>Ein anderes Programm arbeitet gerade an den Paketen. Versuchen Sie es noch einmal, wenn es fertig ist.</translation>
    </message>
    <message>
        <source>This takes the password of somebody who may install programs, and it was not given. Try again.</source>
        <translation>Dafür braucht es das Passwort von jemandem, der Programme installieren darf, und es wurde nicht eingegeben. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>What the package source sent is not signed by anybody whom this system trusts, and was left alone.</source>
        <translation>Was die Paketquelle geschickt hat, ist von niemandem unterschrieben, dem dieses System vertraut, und wurde nicht angerührt.</translation>
    </message>
    <message>
        <source>It could not be downloaded as its package source describes it. Try again later.</source>
        <translation>Die neue Version ließ sich nicht so herunterladen, wie die Paketquelle sie beschreibt. Versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The package sources do not offer this version any more. Try again.</source>
        <translation>Die Paketquellen bieten diese Version nicht mehr an. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>There is a newer version, but other packages hold it back.</source>
        <translation>Es gibt eine neuere Version, aber andere Pakete halten sie zurück.</translation>
    </message>
    <message>
        <source>The package service reports success, but the old version is still there.</source>
        <translation>Der Paketdienst meldet Erfolg, aber die alte Version ist noch da.</translation>
    </message>
    <message>
        <source>The package service reported an error.</source>
        <translation>Der Paketdienst hat einen Fehler gemeldet.</translation>
    </message>
</context>
<context>
    <name>UpdateWindow</name>
    <message>
        <source>Vellora Update</source>
        <translation>Vellora-Update</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Message of the package service</source>
        <translation>Meldung des Paketdienstes</translation>
    </message>
    <message>
        <source>What is new</source>
        <translation>Was neu ist</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>Befehl</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy the command</source>
        <translation>Befehl kopieren</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>&amp;Später</translation>
    </message>
    <message>
        <source>&amp;Install</source>
        <translation>&amp;Installieren</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>&amp;Noch einmal versuchen</translation>
    </message>
    <message>
        <source>Clos&amp;e</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Restart Vellora</source>
        <translation>Vellora neu sta&amp;rten</translation>
    </message>
    <message>
        <source>In a terminal, this command does the same:</source>
        <translation>In einem Terminal tut dieser Befehl dasselbe:</translation>
    </message>
</context>
<context>
    <name>Updater</name>
    <message>
        <source>A new version of Vellora is available</source>
        <translation>Eine neue Version von Vellora ist verfügbar</translation>
    </message>
    <message>
        <source>Vellora %1 is available</source>
        <translation>Vellora %1 ist verfügbar</translation>
    </message>
    <message>
        <source>Choose “Check for Updates…” to see what is new and to install it.</source>
        <translation>Mit „Nach Updates suchen …“ sehen Sie, was neu ist, und installieren sie.</translation>
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
