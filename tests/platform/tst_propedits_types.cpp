#include "tests/platform/editortests.h"
#include "tests/platform/testkinds.h"
#include "platform/kvPropEdits_types.h"

#include "platform/kvColor.h"
#include "platform/kvDesignDialogs.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

using namespace kv;
using namespace kv::test;


namespace {

// Puts a dialog hook in place until the guard that it returns goes, then the one before.
template <typename THook>
auto HookedBy(THook (*Set)(THook), std::type_identity_t<THook> Hook)
{
    return qScopeGuard([Set, previous = Set(std::move(Hook))] { Set(previous); });
}

} // namespace

class tst_PropEditsTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data()
    {
        TextColumns();
        Shows("color", " clwindow ", "clWindow");
        Refuses("color", "clNoSuch", "'clNoSuch' is not a valid colour value");
        // QColor: opaque colours as the platform writes them, clNone for transparent black,
        // clDefault for no colour, any other transparency as "#AARRGGBB".
        Shows("qcolor", "$00030201");
        Shows("qcolor", "#80ff0000", "#80FF0000");
        Shows("qcolor", "#00FF0000");
        Shows("qcolor", "clNone");
        Shows("qcolor", "clDefault");
        Refuses("qcolor", "#12", "'#12' is not a valid colour value");
        Shows("cursor", "pointinghandcursor", "PointingHandCursor");
        Refuses("cursor", "BitmapCursor", "'BitmapCursor' is not a valid cursor value");
        Shows("shortcut", " Ctrl + S ", "Ctrl+S");
        Shows("shortcut", "(none)", "(None)");
        Shows("shortcut", "", "(None)");
        Refuses("shortcut", "Ctrl+Foo", "'Ctrl+Foo' is not a valid shortcut value");
        Shows("date", "-0044-03-15");
        Shows("date", "");
        Refuses("date", "2023-02-29", "'2023-02-29' is not a valid date value");
        Shows("time", "9:05", "09:05:00");
        Shows("time", "12:00:00.05", "12:00:00.050");
        Shows("time", "");
        Refuses("time", "25:00", "'25:00' is not a valid time value");
        Shows("dateTime", "2024-01-02T03:04:05", "2024-01-02 03:04:05");
        Shows("dateTime", "2024-01-02", "2024-01-02 00:00:00");
        Refuses("dateTime", "2024-01-01 noon", "'2024-01-01 noon' is not a valid date and time value");
        Shows("items", "a,b c,\" d\",\"e,f\",\"g\"\"h\",\"\"");
        // Blanks around entries, a doubled quote, a comma at the end.
        Shows("items", " a , \"y\"\"\" ,", "a,\"y\"\"\",\"\"");
        Shows("items", "");
        Refuses("items", "a,\"b", "'a,\"b' is not a valid string list value");
        Refuses("items", "\"a\"b", "'\"a\"b' is not a valid string list value");
        // Value classes: blanks anywhere, brackets where they are optional.
        Shows("size", "640x480", "640 x 480");
        Refuses("size", "99999999999 x 1", "'99999999999 x 1' is not a valid size value");
        Shows("sizeF", "0.30000000000000004 x 16777215");
        Shows("point", "10,-20", "(10, -20)");
        Shows("rect", "(1,2), 3x4", "[(1, 2), 3 x 4]");
        Shows("rectF", "[(0.5, -1), 1.25 x 3]");
        Refuses("rectF", "[(a, 2), 3 x 4]", "'[(a, 2), 3 x 4]' is not a valid rectangle value");
        Shows("margins", "[1, 2, 3, 4]");
        Refuses("margins", "[1, 2, 3]", "'[1, 2, 3]' is not a valid margins value");
        Shows("sizePolicy", "[MinimumExpanding, Expanding, 3, 255]");
        Shows("sizePolicy", "expanding, minimum", "[Expanding, Minimum, 0, 0]");
        Refuses("sizePolicy", "[Huge, Fixed]", "'[Huge, Fixed]' is not a valid size policy value");
        Refuses("sizePolicy", "[Fixed, Fixed, 256, 0]", "Value must be between 0 and 255");
        Refuses("image", "/no/such/picture.png", "'/no/such/picture.png' is not a valid picture value");
    }

    void texts()
    {
        TTypesHolder holder;
        CheckTextRow(holder);
    }

    void reads_data()
    {
        ReadColumns();
        const int common = paMultiSelect | paRevertable;
        QStringList colors;
        GetColorValues([&](const QString &Ident) { colors.append(Ident); });
        Reads("color", "clBtnFace", common | paValueList | paDialog, colors);
        Reads("fixedColor", "clBlue", common | paValueList | paReadOnly, colors); // no dialog for what can't be written
        Reads("font", "(QFont)", paMultiSelect | paSubProperties | paReadOnly | paDialog);
        Reads("font.Name", qPrintable(QFont().family()), common | paValueList | paSortList, QFontDatabase::families());
        Reads("cursor", "CrossCursor", common | paValueList, Strings({"ArrowCursor", "UpArrowCursor", "CrossCursor"}));
        Reads("shortcut", "Alt+Q", common | paValueList, Strings({"(None)", "Ctrl+A", "Ctrl+B"}));
        Reads("items", "seed", common | paDialog);
        Reads("size", "9 x 9", common | paSubProperties);
        Reads("pixmap", "(None)", common | paDialog);
    }

    void reads()
    {
        TTypesHolder holder;
        CheckReadRow(holder);
    }

    // Each part's own text written back leaves the value as it was, even what the part does not
    // show (a fraction of a point, a weight that merely counts as bold). Then every part is
    // written, the last first: each reads back as written, and the later writes left the earlier
    // parts alone (X and Y move a rectangle, they don't resize it).
    void parts_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("parts");

        QTest::newRow("size") << "size" << "Width=1 Height=2";
        QTest::newRow("sizeF") << "sizeF" << "Width=0.5 Height=2.25";
        QTest::newRow("point") << "point" << "X=1 Y=-3";
        QTest::newRow("rect") << "rect" << "X=1 Y=2 Width=3 Height=4";
        QTest::newRow("rectF") << "rectF" << "X=0.5 Y=-1 Width=1.25 Height=3";
        QTest::newRow("margins") << "margins" << "Left=1 Top=2 Right=3 Bottom=4";
        QTest::newRow("sizePolicy") << "sizePolicy"
                                    << "HorizontalPolicy=Expanding VerticalPolicy=Fixed HorizontalStretch=1 VerticalStretch=2 "
                                       "HeightForWidth=False WidthForHeight=True RetainSizeWhenHidden=True";
        QTest::newRow("font") << "font"
                              << "Name=Courier Size=20 Style=[fsBold,fsUnderline] Weight=700 PixelSize=-1 Stretch=150 "
                                 "Kerning=False Overline=True FixedPitch=True";
    }

    void parts()
    {
        QFETCH(QString, property);
        QFETCH(QString, parts);

        TTypesHolder holder;
        const QVariant before = holder.property(property.toLatin1());
        const TEditors subs = SubEditors(*EditorFor({&holder}, property));
        for (const TEditorPtr &sub : subs) {
            sub->SetValue(sub->GetValue());
            QVERIFY2(holder.property(property.toLatin1()) == before, qPrintable(sub->GetName()));
        }
        const QStringList written = parts.split(QLatin1Char(' '));
        for (size_t i = subs.size(); i-- > 0;)
            subs[i]->SetValue(written.value(qsizetype(i)).section(QLatin1Char('='), 1));
        QStringList shown;
        for (const TEditorPtr &sub : subs)
            shown.append(sub->GetName() + QLatin1Char('=') + sub->GetValue());
        QCOMPARE(shown.join(QLatin1Char(' ')), parts);
    }

    // The editors of several objects: equal where every object shows the same text, showing the
    // first one's value otherwise. A write goes into each, keeping what belongs to each object:
    // the other parts of a value, the hidden parts of a size policy, a system colour from its own
    // palette, the time spec of a date and time. A bitmap cursor has no text to type, unless a
    // shape replaces it among others. An object destroyed while its editors are shown reads as
    // nothing and is left out of writes.
    void severalAndDestroyedObjects()
    {
        auto first = std::make_unique<TTypesHolder>();
        TTypesHolder second;
        const QList<QObject *> both{first.get(), &second};

        const TEditors editors = EditorsOf(both, nullptr, TTypeKinds::Properties());
        for (const TEditorPtr &editor : editors)
            QVERIFY2(editor->AllEqual(), qPrintable(editor->GetName()));
        second.m_size = QSize(1, 2);
        second.m_qcolor = QColor(7, 7, 8);
        second.m_shortcut = QKeySequence(QStringLiteral("Alt+W"));
        second.m_dateTime = second.m_dateTime.addMSecs(1);
        for (const char *name : {"size", "qcolor", "shortcut", "dateTime"})
            QVERIFY2(!EditorFor(both, QString::fromLatin1(name))->AllEqual(), name);

        first->m_rect = QRect(1, 1, 10, 10);
        second.m_rect = QRect(2, 2, 20, 20);
        EditorFor(both, QStringLiteral("rect.Width"))->SetValue(QStringLiteral("5"));
        QCOMPARE(first->m_rect, QRect(1, 1, 5, 10));
        QCOMPARE(second.m_rect, QRect(2, 2, 5, 20));

        first->m_sizePolicy.setRetainSizeWhenHidden(true);
        second.m_sizePolicy.setHeightForWidth(false);
        EditorFor(both, QStringLiteral("sizePolicy"))->SetValue(QStringLiteral("[Fixed, Maximum, 1, 2]"));
        for (QObject *holder : both)
            QCOMPARE(EditorFor({holder}, QStringLiteral("sizePolicy"))->GetValue(), QStringLiteral("[Fixed, Maximum, 1, 2]"));
        QVERIFY(first->m_sizePolicy.retainSizeWhenHidden());
        QVERIFY(first->m_sizePolicy.hasHeightForWidth());
        QVERIFY(!second.m_sizePolicy.hasHeightForWidth());

        QColorDialog custom;
        custom.setPalette(QPalette(QColor(1, 2, 3)));
        EditorFor({&custom}, QStringLiteral("currentColor"))->SetValue(QStringLiteral("clBtnFace"));
        QCOMPARE(custom.currentColor(), QColor(1, 2, 3));
        EditorFor({first.get()}, QStringLiteral("qcolor"))->SetValue(QStringLiteral("clBtnFace"));
        QCOMPARE(first->m_qcolor, QGuiApplication::palette().color(QPalette::Button));

        QPixmap picture(16, 16);
        picture.fill(Qt::black);
        second.m_cursor = QCursor(picture);
        TEditorPtr bitmap = EditorFor({&second}, QStringLiteral("cursor"));
        QCOMPARE(bitmap->GetValue(), QStringLiteral("BitmapCursor"));
        QVERIFY(bitmap->GetAttributes().testFlag(paReadOnly));
        bitmap->SetValue(bitmap->GetValue());
        QCOMPARE(second.m_cursor.shape(), Qt::BitmapCursor);
        TEditorPtr cursor = EditorFor(both, QStringLiteral("cursor"));
        QVERIFY(!cursor->GetAttributes().testFlag(paReadOnly));
        QVERIFY(!cursor->AllEqual());
        cursor->SetValue(QStringLiteral("IBeamCursor"));
        QCOMPARE(second.m_cursor.shape(), Qt::IBeamCursor);

        for (const QDateTime &current : {QDateTime(QDate(2024, 6, 1), QTime(12, 0), Qt::UTC),
                                         QDateTime(QDate(2024, 6, 1), QTime(12, 0), Qt::OffsetFromUTC, 3600)}) {
            first->m_dateTime = current;
            EditorFor({first.get()}, QStringLiteral("dateTime"))->SetValue(QStringLiteral("2024-06-01 13:00:00"));
            QCOMPARE(first->m_dateTime.timeSpec(), current.timeSpec());
            QCOMPARE(first->m_dateTime, current.addSecs(3600));
        }

        first.reset();
        for (const TEditorPtr &editor : editors) {
            QVERIFY2(editor->GetValue().isEmpty(), qPrintable(editor->GetName()));
            QVERIFY(!editor->ValueAvailable());
            for (const TEditorPtr &sub : SubEditors(*editor))
                QVERIFY(sub->GetValue().isEmpty());
        }
        Find(editors, QStringLiteral("size"))->SetValue(QStringLiteral("5 x 6"));
        QCOMPARE(second.m_size, QSize(5, 6));
    }

    // Each dialog starts from the first object's value (a system colour as the colour it stands
    // for); cancelled it changes nothing, confirmed it writes every object and tells the designer.
    void dialogs_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("offered");
        QTest::addColumn<QVariant>("chosen");

        QTest::newRow("TColor") << "color" << QVariant(QGuiApplication::palette().color(QPalette::Button))
                                << QVariant::fromValue(TColor(0x302010));
        QTest::newRow("QColor") << "qcolor" << QVariant(TTypesHolder().m_qcolor) << QVariant(QColor(0x10, 0x20, 0x30));
        QTest::newRow("string list") << "items" << QVariant(Strings({"seed"})) << QVariant(Strings({"a, b", ""}));
    }

    void dialogs()
    {
        QFETCH(QString, property);
        QFETCH(QVariant, offered);
        QFETCH(QVariant, chosen);

        TRecordingDesigner designer;
        TTypesHolder first;
        TTypesHolder second;
        second.m_items.clear();
        QVariant shown;
        QString caption;
        bool confirm = false;
        const auto answer = [&](auto &Value, const auto &Chosen) {
            shown = QVariant::fromValue(Value);
            Value = Chosen;
            return confirm;
        };
        const auto colorHook =
            HookedBy(&SetColorDialogHook, [&](QColor &Color) { return answer(Color, QColor(0x10, 0x20, 0x30)); });
        const auto listHook = HookedBy(&SetStringListDialogHook, [&](QStringList &Lines, const QString &Caption) {
            caption = Caption;
            return answer(Lines, chosen.toStringList());
        });

        const QByteArray name = property.toLatin1();
        TEditorPtr editor = EditorFor({&first, &second}, property, &designer);
        editor->Edit();
        QCOMPARE(shown, offered);
        QVERIFY(first.property(name) != chosen);
        QCOMPARE(designer.modified, 0);

        confirm = true;
        editor->Edit();
        QCOMPARE(first.property(name), chosen);
        QCOMPARE(second.property(name), chosen);
        QCOMPARE(designer.modified, 1);
        if (property == QLatin1String("items"))
            QCOMPARE(caption, QStringLiteral("holder.items"));
    }

    // The dialog shown without a hook: one entry per line, empty entries kept, the line count in
    // the title; what is typed is taken only when the dialog is accepted.
    void standardStringListDialog()
    {
        const auto standard = HookedBy(&SetStringListDialogHook, TStringListDialogHook());
        QString title;
        const auto answer = [&title](const QString &Text, bool Accept) {
            QTimer::singleShot(0, [&title, Text, Accept] {
                auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                title = dialog->windowTitle();
                dialog->findChild<QPlainTextEdit *>()->setPlainText(Text);
                Accept ? dialog->accept() : dialog->reject();
            });
        };

        QStringList lines{QStringLiteral("a"), QString(), QString()};
        answer(QStringLiteral("x\n\ny\n"), true);
        QVERIFY(ExecuteStringListDialog(lines, QStringLiteral("holder.items")));
        QCOMPARE(title, QStringLiteral("Editing holder.items (3 lines)"));
        QCOMPARE(lines, Strings({"x", "", "y"}));

        answer(QStringLiteral("z"), false);
        QVERIFY(!ExecuteStringListDialog(lines, QString()));
        QCOMPARE(lines, Strings({"x", "", "y"}));
        QCOMPARE(title, QStringLiteral("Editing String list editor (3 lines)"));
    }

    // Pictures load from files, clear with "(None)", keep their picture when their own text is
    // written back, and come from the picture dialog.
    void pictures()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString file = dir.filePath(QStringLiteral("red.png"));
        QImage red(12, 8, QImage::Format_ARGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(file));

        TTypesHolder holder;
        const TEditors editors = EditorsOf({&holder});
        TPropertyEditor *pixmap = Find(editors, QStringLiteral("pixmap"));
        TPropertyEditor *image = Find(editors, QStringLiteral("image"));
        QVERIFY(pixmap && image);

        pixmap->SetValue(file);
        image->SetValue(file);
        QCOMPARE(pixmap->GetValue(), QStringLiteral("(QPixmap 12 x 8)"));
        QCOMPARE(image->GetValue(), QStringLiteral("(QImage 12 x 8)"));

        // Its own text is no file name: the picture stays.
        const qint64 key = holder.m_pixmap.cacheKey();
        pixmap->SetValue(pixmap->GetValue());
        QCOMPARE(holder.m_pixmap.cacheKey(), key);

        // Two objects share a picture only when it is the same one.
        TTypesHolder other;
        other.m_pixmap = holder.m_pixmap;
        TEditorPtr both = EditorFor({&holder, &other}, QStringLiteral("pixmap"));
        QVERIFY(both->AllEqual());
        other.m_pixmap = QPixmap(12, 8);
        QVERIFY(!both->AllEqual());

        pixmap->SetValue(QStringLiteral("(None)"));
        QVERIFY(holder.m_pixmap.isNull());

        // The dialog: cancelled changes nothing, confirmed loads the file chosen.
        QString chosen;
        const auto pictureHook = HookedBy(&SetPictureDialogHook, [&chosen](QString &FileName) {
            FileName = chosen;
            return !chosen.isEmpty();
        });
        image->Edit();
        QCOMPARE(image->GetValue(), QStringLiteral("(QImage 12 x 8)"));
        image->SetValue(QString());
        chosen = file;
        image->Edit();
        QCOMPARE(image->GetValue(), QStringLiteral("(QImage 12 x 8)"));
    }
};

QTEST_MAIN(tst_PropEditsTypes)
#include "tst_propedits_types.moc"
