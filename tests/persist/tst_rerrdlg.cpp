#include "persist/ideCommon.h"
#include "persist/ideRerrDlg.h"
#include "platform/kvDesignDialogs.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace kv;
using namespace Qt::StringLiterals;

class tst_ReaderErrorDlg : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { SetModalDialogHook({}); }

    void looksAsTheUserExpects()
    {
        TReaderErrorDlg dialog;
        dialog.SetMessage(u"Property Foo does not exist."_s);
        QCOMPARE(dialog.windowTitle(), u"Error Reading Form"_s);
        // The message keeps its own point and the template adds another.
        QVERIFY(dialog.MessageText().startsWith(u"Property Foo does not exist..  Ignore the error and continue?"_s));
        QStringList captions;
        for (QPushButton *button : dialog.findChildren<QPushButton *>())
            captions << button->objectName() + u'=' + button->text();
        QCOMPARE(captions, (QStringList{u"IgnoreButton=&Ignore"_s, u"CancelButton=Cancel"_s,
                                        u"IgnoreAllButton=Ignore &All"_s}));
        QVERIFY(dialog.findChild<QLabel *>(u"LerrMess"_s)->wordWrap());
    }

    // Each way out of the dialog, as the filer sees it: Handled and IgnoreAll before and after.
    void answers_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QList<bool>>("before");
        QTest::addColumn<QList<bool>>("after");
        QTest::newRow("ignore") << u"IgnoreButton"_s << QList{false, false} << QList{true, false};
        QTest::newRow("cancel") << u"CancelButton"_s << QList{true, true} << QList{false, true};
        QTest::newRow("ignore all") << u"IgnoreAllButton"_s << QList{false, false} << QList{true, true};
        QTest::newRow("escape") << u"Escape"_s << QList{true, false} << QList{false, false};
        QTest::newRow("other result") << u"99"_s << QList{true, false} << QList{true, false};
    }
    void answers()
    {
        QFETCH(QString, action);
        QString shown;
        bool published = false;
        SetModalDialogHook([&](QDialog &Dialog) -> int {
            shown = static_cast<TReaderErrorDlg &>(Dialog).MessageText();
            published = ReaderErrorDlg == &Dialog;
            if (action == u"Escape")
                QTest::keyClick(&Dialog, Qt::Key_Escape);
            else if (auto *button = Dialog.findChild<QPushButton *>(action))
                button->click();
            else
                return action.toInt();
            return Dialog.result();
        });
        QFETCH(QList<bool>, before);
        bool handled = before[0];
        bool ignoreAll = before[1];
        ideRerrDlg::Initialize();
        ReaderErrorHandler(u"Invalid property value"_s, handled, ignoreAll);
        ideRerrDlg::Finalize();
        QVERIFY(!ReaderErrorHandler);
        QVERIFY(shown.startsWith(u"Invalid property value."_s));
        QVERIFY(published);
        QVERIFY(!ReaderErrorDlg);
        QTEST((QList<bool>{handled, ignoreAll}), "after");
    }
};

QTEST_MAIN(tst_ReaderErrorDlg)
#include "tst_rerrdlg.moc"
