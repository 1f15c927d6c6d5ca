<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar_EG">
<context>
    <name>AppDelegate</name>
    <message>
        <source>Empty selection</source>
        <translation>التحديد فارغ</translation>
    </message>
    <message>
        <source>No text found</source>
        <translation>لم يُعثر على نص</translation>
    </message>
    <message>
        <source>OCR error: </source>
        <translation>خطأ في التعرّف على النص: </translation>
    </message>
    <message>
        <source>Error</source>
        <translation>خطأ</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>نُسخ</translation>
    </message>
    <message>
        <source>Permission needed</source>
        <translation>يلزم إذن</translation>
    </message>
    <message>
        <source>Screen Recording permission not granted — left-click to try again</source>
        <translation>لم يُمنح إذن تسجيل الشاشة — انقر بالزر الأيسر للمحاولة مجددًا</translation>
    </message>
    <message>
        <source>Capture Text</source>
        <translation>التقاط نص</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>الإعدادات…</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>التحقق من وجود تحديثات…</translation>
    </message>
    <message>
        <source>Quit Vellora</source>
        <translation>إنهاء Vellora</translation>
    </message>
    <message>
        <source>Left-click to capture text · Right-click for menu</source>
        <translation>النقر الأيسر لالتقاط نص · النقر الأيمن للقائمة</translation>
    </message>
    <message>
        <source>Settings cannot be saved: “%1” cannot be written</source>
        <translation>تعذّر حفظ الإعدادات: لا يمكن الكتابة في «%1»</translation>
    </message>
    <message>
        <source>The desktop let no overlay cover the screen</source>
        <translation>لم يسمح سطح المكتب بتغطية الشاشة</translation>
    </message>
    <message>
        <source>The text could not be copied: the desktop gave Vellora no keyboard</source>
        <translation>تعذّر نسخ النص: لم يمنح سطح المكتب لوحة المفاتيح لـ Vellora</translation>
    </message>
    <message>
        <source>There is not enough memory. Close some programs and try again.</source>
        <translation>لا توجد ذاكرة كافية. أغلق بعض البرامج ثم أعد المحاولة.</translation>
    </message>
</context>
<context>
    <name>DesktopPlatform</name>
    <message>
        <source>%1 cannot see this screen: it works on X11 desktops, and this session is shown by “%2”. Log in to an X11 session (often called “Xorg” on the login screen).</source>
        <translation>لا يستطيع %1 رؤية هذه الشاشة: فهو يعمل على أسطح مكتب X11، وهذه الجلسة يعرضها «%2». سجّل الدخول إلى جلسة X11 (تُسمّى غالبًا «Xorg» في شاشة الدخول).</translation>
    </message>
    <message>
        <source>%1 cannot work on this Wayland desktop. %2 Log in to an X11 session (often called “Xorg” on the login screen), or to GNOME, Plasma or sway.</source>
        <translation>لا يستطيع %1 العمل على سطح مكتب Wayland هذا. %2 سجّل الدخول إلى جلسة X11 (تُسمّى غالبًا «Xorg» في شاشة الدخول) أو إلى GNOME أو Plasma أو sway.</translation>
    </message>
    <message>
        <source>The desktop lets no program see the screen (zwlr_screencopy_manager_v1, ext_image_copy_capture_manager_v1, org.kde.KWin.ScreenShot2, org.freedesktop.portal.Screenshot).</source>
        <translation>لا يسمح سطح المكتب لأي برنامج برؤية الشاشة (zwlr_screencopy_manager_v1 أو ext_image_copy_capture_manager_v1 أو org.kde.KWin.ScreenShot2 أو org.freedesktop.portal.Screenshot).</translation>
    </message>
    <message>
        <source>%1 was started as an X11 program on a Wayland desktop, which shows those nothing of the screen. %2 Start it with WAYLAND_DISPLAY set and without QT_QPA_PLATFORM.</source>
        <translation>شُغِّل %1 كبرنامج X11 على سطح مكتب Wayland، وهو لا يُري هذه البرامج شيئًا من الشاشة. %2 شغِّله مع ضبط WAYLAND_DISPLAY ومن دون QT_QPA_PLATFORM.</translation>
    </message>
</context>
<context>
    <name>GlobalAccelKey</name>
    <message>
        <source>Capture Text</source>
        <translation>التقاط نص</translation>
    </message>
</context>
<context>
    <name>GlobalHotkey</name>
    <message>
        <source>This shortcut does not work here: another program or the desktop has it. Choose another one.</source>
        <translation>لا يعمل هذا الاختصار هنا: يستخدمه برنامج آخر أو سطح المكتب. اختر اختصارًا آخر.</translation>
    </message>
    <message>
        <source>The desktop no longer listens to this shortcut. Switch it off and on again, or choose another one.</source>
        <translation>لم يعد سطح المكتب يستمع إلى هذا الاختصار. أوقفه ثم شغّله من جديد، أو اختر اختصارًا آخر.</translation>
    </message>
</context>
<context>
    <name>HotkeyRecorderField</name>
    <message>
        <source>Shortcut</source>
        <translation>الاختصار</translation>
    </message>
    <message>
        <source>Type shortcut…</source>
        <translation>اضغط الاختصار…</translation>
    </message>
    <message>
        <source>Press the new shortcut, or Escape to keep the old one.</source>
        <translation>اضغط الاختصار الجديد، أو Escape للإبقاء على القديم.</translation>
    </message>
    <message>
        <source>%1. Press Space to record another shortcut.</source>
        <translation>%1. اضغط مفتاح المسافة لتسجيل اختصار آخر.</translation>
    </message>
    <message>
        <source>On this keyboard, the key with “%1”</source>
        <translation>على لوحة المفاتيح هذه: المفتاح «%1»</translation>
    </message>
</context>
<context>
    <name>HotkeyString</name>
    <message>
        <source>Shift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
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
        <translation>لا يعرض KWin الشاشة إلا للبرامج التي لها مدخل سطح مكتب، ولا مدخل يذكر %1. ثبّت Vellora أو شغّله بالأمر Scripts/run الذي ينشئ المدخل.</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Quit Vellora</source>
        <translation>إنهاء Vellora</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>تراجع</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>إعادة</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>قص</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>لصق</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>تحديد الكل</translation>
    </message>
</context>
<context>
    <name>MissingStatusItem</name>
    <message>
        <source>This desktop shows no status item of %1. Start %1 again to capture, or turn on the shortcut below. “Settings…” in the launcher’s menu opens this window.</source>
        <translation>لا يعرض سطح المكتب هذا رمز حالة %1. شغّل %1 مرة أخرى للالتقاط، أو فعّل الاختصار أدناه. يفتح «الإعدادات…» في قائمة المُشغّل هذه النافذة.</translation>
    </message>
    <message>
        <source>The GNOME extension “%1” shows it.</source>
        <translation>تعرضه إضافة جنوم «%1».</translation>
    </message>
</context>
<context>
    <name>OCRService</name>
    <message>
        <source>There is not enough memory to read the picture. Close some programs and try again.</source>
        <translation>لا توجد ذاكرة كافية لقراءة الصورة. أغلق بعض البرامج وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The system cannot start any more work. Close some programs and try again.</source>
        <translation>لا يستطيع النظام بدء عمل آخر. أغلق بعض البرامج وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Reading the picture failed unexpectedly.</source>
        <translation>فشلت قراءة الصورة على نحو غير متوقع.</translation>
    </message>
</context>
<context>
    <name>OutputMode</name>
    <message>
        <source>Clipboard Only</source>
        <translation>الحافظة فقط</translation>
    </message>
    <message>
        <source>Popup Only</source>
        <translation>النافذة فقط</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>كلاهما</translation>
    </message>
</context>
<context>
    <name>PermissionWindow</name>
    <message>
        <source>%1 reads the screen only when you capture.</source>
        <translation>لا يقرأ %1 الشاشة إلا عندما تلتقط.</translation>
    </message>
    <message>
        <source>&amp;Ask Again</source>
        <translation>اسأل مرة أخرى</translation>
    </message>
    <message>
        <source>&amp;Not Now</source>
        <translation>ليس الآن</translation>
    </message>
    <message>
        <source>Your desktop now asks whether %1 may take pictures of the screen. You can change your answer in its settings.</source>
        <translation>يسألك سطح المكتب الآن إن كان يجوز لـ %1 التقاط صور للشاشة. يمكنك تغيير إجابتك في إعداداته.</translation>
    </message>
    <message>
        <source>Your desktop took no answer.</source>
        <translation>لم يقبل سطح المكتب أي إجابة.</translation>
    </message>
</context>
<context>
    <name>Publisher</name>
    <message>
        <source>Developed by the Vellora Project</source>
        <translation>من تطوير مشروع Vellora</translation>
    </message>
    <message>
        <source>© 2026 The Vellora Project</source>
        <translation>© 2026 مشروع Vellora</translation>
    </message>
</context>
<context>
    <name>ResultPanel</name>
    <message>
        <source>Copy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Vellora — Recognized Text</source>
        <translation>Vellora — النص المتعرَّف عليه</translation>
    </message>
    <message>
        <source>Recognized text</source>
        <translation>النص المتعرَّف عليه</translation>
    </message>
    <message>
        <source>Copied!</source>
        <translation>نُسخ!</translation>
    </message>
</context>
<context>
    <name>ScreenshotPermission</name>
    <message>
        <source>It was denied; the desktop’s settings change that.</source>
        <translation>لقد رُفض؛ تغيّر إعدادات سطح المكتب ذلك.</translation>
    </message>
    <message>
        <source>It was denied to all programs that the desktop did not start. Start %1 from the list of applications.</source>
        <translation>لقد رُفض لكل البرامج التي لم يشغّلها سطح المكتب. شغّل %1 من قائمة التطبيقات.</translation>
    </message>
    <message>
        <source>It was denied; this changes it: Settings, Applications, %1, Screenshots.</source>
        <translation>لقد رُفض؛ غيّره هنا: الإعدادات، التطبيقات، %1، لقطات الشاشة.</translation>
    </message>
    <message>
        <source>The desktop’s portal was asked, and gave no picture.</source>
        <translation>سُئلت بوابة سطح المكتب ولم تعطِ صورة.</translation>
    </message>
</context>
<context>
    <name>ScreenshotQuestion</name>
    <message>
        <source>It asks only for programs that it has started itself: start %1 from the list of applications.</source>
        <translation>لا يسأل إلا عن البرامج التي شغّلها بنفسه: شغّل %1 من قائمة التطبيقات.</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Output</source>
        <translation>الناتج</translation>
    </message>
    <message>
        <source>After &amp;OCR</source>
        <translation>بعد التعرّف</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>الالتقاط</translation>
    </message>
    <message>
        <source>&amp;Shutter sound</source>
        <translation>صوت الالتقاط</translation>
    </message>
    <message>
        <source>Show &amp;notification when copied</source>
        <translation>إظهار إشعار عند النسخ</translation>
    </message>
    <message>
        <source>Keyboard Shortcut</source>
        <translation>اختصار لوحة المفاتيح</translation>
    </message>
    <message>
        <source>&amp;Enable global hotkey</source>
        <translation>تفعيل الاختصار العام</translation>
    </message>
    <message>
        <source>Shor&amp;tcut:</source>
        <translation>الاختصار:</translation>
    </message>
    <message>
        <source>General</source>
        <translation>عام</translation>
    </message>
    <message>
        <source>&amp;Launch at login</source>
        <translation>التشغيل عند تسجيل الدخول</translation>
    </message>
    <message>
        <source>About</source>
        <translation>حول</translation>
    </message>
    <message>
        <source>Check for &amp;Updates</source>
        <translation>التحقق من التحديثات</translation>
    </message>
    <message>
        <source>The desktop listens to: %1</source>
        <translation>يستمع سطح المكتب إلى: %1</translation>
    </message>
    <message>
        <source>Status Item</source>
        <translation>رمز الحالة</translation>
    </message>
</context>
<context>
    <name>SettingsWindowController</name>
    <message>
        <source>Vellora Settings</source>
        <translation>إعدادات Vellora</translation>
    </message>
</context>
<context>
    <name>TesseractTextRecognizer</name>
    <message>
        <source>No language models are installed for text recognition. Install a package such as tesseract-ocr-eng, or put trained data into %1.</source>
        <translation>لا توجد نماذج لغوية مثبتة للتعرف على النصوص. ثبّت حزمة مثل tesseract-ocr-eng أو ضع بيانات مدرَّبة في %1.</translation>
    </message>
    <message>
        <source>The language model “%1” is damaged. Install its package again.</source>
        <translation>النموذج اللغوي «%1» تالف. أعد تثبيت حزمته.</translation>
    </message>
    <message>
        <source>The language models %1 are damaged. Install their packages again.</source>
        <translation>النماذج اللغوية %1 تالفة. أعد تثبيت حزمها.</translation>
    </message>
</context>
<context>
    <name>UnboundKeyTap</name>
    <message>
        <source>This desktop lets programs bind no keys. Bind one yourself, in its settings, to: %1</source>
        <translation>لا يسمح سطح المكتب هذا للبرامج بربط المفاتيح. اربط مفتاحًا بنفسك من إعداداته بالأمر: %1</translation>
    </message>
</context>
<context>
    <name>UpdateTexts</name>
    <message>
        <source>Looking for updates</source>
        <translation>البحث عن تحديثات</translation>
    </message>
    <message>
        <source>Vellora is up to date</source>
        <translation>Vellora محدَّث إلى آخر إصدار</translation>
    </message>
    <message>
        <source>A new version of Vellora is available</source>
        <translation>يتوفر إصدار جديد من Vellora</translation>
    </message>
    <message>
        <source>Vellora %1 is available</source>
        <translation>يتوفر Vellora %1</translation>
    </message>
    <message>
        <source>Installing the new version</source>
        <translation>جارٍ تثبيت الإصدار الجديد</translation>
    </message>
    <message>
        <source>Installing Vellora %1</source>
        <translation>جارٍ تثبيت Vellora %1</translation>
    </message>
    <message>
        <source>The new version is installed</source>
        <translation>تم تثبيت الإصدار الجديد</translation>
    </message>
    <message>
        <source>Vellora %1 is installed</source>
        <translation>تم تثبيت Vellora %1</translation>
    </message>
    <message>
        <source>Vellora cannot look for updates.</source>
        <translation>لا يستطيع Vellora البحث عن تحديثات.</translation>
    </message>
    <message>
        <source>The update was not installed</source>
        <translation>لم يُثبَّت التحديث</translation>
    </message>
    <message>
        <source>You have version %1, and the package sources offer no newer one.</source>
        <translation>لديك الإصدار %1، ولا تعرض مصادر الحزم إصدارًا أحدث.</translation>
    </message>
    <message>
        <source>You have version %1.</source>
        <translation>لديك الإصدار %1.</translation>
    </message>
    <message>
        <source>It is used from the next start on.</source>
        <translation>سيُستخدم ابتداءً من التشغيل التالي.</translation>
    </message>
    <message>
        <source>This copy was not installed from a package source. To get a newer version, go back to where you got this one.</source>
        <translation>لم تُثبَّت هذه النسخة من مصدر حزم. للحصول على إصدار أحدث، عُد إلى المكان الذي حصلت منه على هذه النسخة.</translation>
    </message>
    <message>
        <source>No installed package holds this copy of Vellora. To get a newer version, go back to where you got this one.</source>
        <translation>لا توجد حزمة مثبَّتة تحتوي على هذه النسخة من Vellora. للحصول على إصدار أحدث، عُد إلى المكان الذي حصلت منه على هذه النسخة.</translation>
    </message>
    <message>
        <source>Its package was installed from a file, and no package source of this system has newer ones. Add Vellora’s package source, or install a newer file.</source>
        <translation>ثُبِّتت حزمته من ملف، ولا يحتوي أي مصدر حزم في هذا النظام على إصدار أحدث. أضف مصدر حزم Vellora، أو ثبِّت ملفًا أحدث.</translation>
    </message>
    <message>
        <source>There is no network. Try again once you are connected.</source>
        <translation>لا يوجد اتصال بالشبكة. حاول مرة أخرى بعد الاتصال.</translation>
    </message>
    <message>
        <source>There is not enough space on the disk. Delete something and try again.</source>
        <translation>لا توجد مساحة كافية على القرص. احذف شيئًا وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between names of packages</comment>
        <translation>، </translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <comment>names of packages</comment>
        <translation>
            <numerusform>%1</numerusform>
            <numerusform>%1 وواحدة أخرى</numerusform>
            <numerusform>%1 واثنتان أخريان</numerusform>
            <numerusform>%1 و%n أخرى</numerusform>
            <numerusform>%1 و%n أخرى</numerusform>
            <numerusform>%1 و%n أخرى</numerusform>
        </translation>
    </message>
    <message>
        <source>Also installs: %1</source>
        <translation>يثبِّت أيضًا: %1</translation>
    </message>
    <message>
        <source>Also updates: %1</source>
        <translation>يحدِّث أيضًا: %1</translation>
    </message>
    <message>
        <source>Removes: %1</source>
        <translation>يزيل: %1</translation>
    </message>
    <message>
        <source>Asking the package sources…</source>
        <translation>جارٍ سؤال مصادر الحزم…</translation>
    </message>
    <message>
        <source>Waiting until another installation has ended…</source>
        <translation>في انتظار انتهاء تثبيت آخر…</translation>
    </message>
    <message>
        <source>Waiting for your password…</source>
        <translation>في انتظار كلمة مرورك…</translation>
    </message>
    <message>
        <source>Downloading…</source>
        <translation>جارٍ التنزيل…</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>جارٍ التثبيت…</translation>
    </message>
    <message>
        <source>PackageKit, the service that would look for them, is not installed or cannot be started.</source>
        <translation>الخدمة التي تبحث عنها، PackageKit، غير مثبَّتة أو يتعذر تشغيلها.</translation>
    </message>
    <message>
        <source>The package service ended in the middle of it. Try again.</source>
        <translation>توقفت خدمة الحزم أثناء العمل. حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The package service does not answer. It may be busy; try again later.</source>
        <translation>لا تستجيب خدمة الحزم. قد تكون مشغولة؛ حاول مرة أخرى لاحقًا.</translation>
    </message>
    <message>
        <source>The package service gave an answer that makes no sense.</source>
        <translation>أعطت خدمة الحزم جوابًا غير مفهوم.</translation>
    </message>
    <message>
        <source>The desktop looks for new versions of Vellora by itself, and has not told of one so far.</source>
        <translation>يبحث سطح المكتب بنفسه عن إصدارات جديدة من Vellora، ولم يبلغ عن أي منها حتى الآن.</translation>
    </message>
    <message>
        <source>Not every package source could be read, so there may be a newer version that is not known here. Check the network and try again.</source>
        <translation>تعذرت قراءة بعض مصادر الحزم، فقد يوجد إصدار أحدث غير معروف هنا. تحقق من الشبكة وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Another program is working on the packages. Try again when it has finished.</source>
        <translation>يعمل برنامج آخر على الحزم. حاول مرة أخرى عند انتهائه.</translation>
    </message>
    <message>
        <source>This takes the password of somebody who may install programs, and it was not given. Try again.</source>
        <translation>يتطلب هذا كلمة مرور شخص يحق له تثبيت البرامج، ولم تُدخَل. حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>What the package source sent is not signed by anybody whom this system trusts, and was left alone.</source>
        <translation>ما أرسله مصدر الحزم غير موقَّع من جهة يثق بها هذا النظام، فتُرك دون استخدام.</translation>
    </message>
    <message>
        <source>It could not be downloaded as its package source describes it. Try again later.</source>
        <translation>تعذر تنزيله كما يصفه مصدر الحزم. حاول مرة أخرى لاحقًا.</translation>
    </message>
    <message>
        <source>The package sources do not offer this version any more. Try again.</source>
        <translation>لم تعد مصادر الحزم تعرض هذا الإصدار. حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>There is a newer version, but other packages hold it back.</source>
        <translation>يوجد إصدار أحدث، لكن حزمًا أخرى تمنع تثبيته.</translation>
    </message>
    <message>
        <source>The package service reports success, but the old version is still there.</source>
        <translation>تفيد خدمة الحزم بالنجاح، لكن الإصدار القديم ما زال موجودًا.</translation>
    </message>
    <message>
        <source>The package service reported an error.</source>
        <translation>أبلغت خدمة الحزم عن خطأ.</translation>
    </message>
</context>
<context>
    <name>UpdateWindow</name>
    <message>
        <source>Vellora Update</source>
        <translation>تحديث Vellora</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>التقدم</translation>
    </message>
    <message>
        <source>Message of the package service</source>
        <translation>رسالة خدمة الحزم</translation>
    </message>
    <message>
        <source>What is new</source>
        <translation>ما الجديد</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>الأمر</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Copy the command</source>
        <translation>نسخ الأمر</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>لاحقًا</translation>
    </message>
    <message>
        <source>&amp;Install</source>
        <translation>تثبيت</translation>
    </message>
    <message>
        <source>&amp;Try Again</source>
        <translation>حاول مرة أخرى</translation>
    </message>
    <message>
        <source>Clos&amp;e</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>&amp;Restart Vellora</source>
        <translation>إعادة تشغيل Vellora</translation>
    </message>
    <message>
        <source>In a terminal, this command does the same:</source>
        <translation>يؤدي هذا الأمر الغرض نفسه في نافذة الأوامر:</translation>
    </message>
</context>
<context>
    <name>Updater</name>
    <message>
        <source>A new version of Vellora is available</source>
        <translation>يتوفر إصدار جديد من Vellora</translation>
    </message>
    <message>
        <source>Vellora %1 is available</source>
        <translation>يتوفر Vellora %1</translation>
    </message>
    <message>
        <source>Choose “Check for Updates…” to see what is new and to install it.</source>
        <translation>اختر «التحقق من وجود تحديثات…» لترى الجديد ولتثبيته.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Turns any region of the screen into text</source>
        <translation>يحوّل أي منطقة من الشاشة إلى نص</translation>
    </message>
</context>
</TS>
