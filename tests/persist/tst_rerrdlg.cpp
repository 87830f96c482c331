#include "persist/ideCommon.h"
#include "persist/ideRerrDlg.h"
#include "platform/kvDesignDialogs.h"

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

    // Each way out of the dialog, as the filer sees it: Handled and IgnoreAll before and after.
    void answers_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QList<bool>>("flags");
        QTest::addColumn<QList<bool>>("after");
        QTest::newRow("ignore") << u"IgnoreButton"_s << QList{false, false} << QList{true, false};
        QTest::newRow("cancel") << u"CancelButton"_s << QList{true, true} << QList{false, true};
        QTest::newRow("ignore all") << u"IgnoreAllButton"_s << QList{false, false} << QList{true, true};
        QTest::newRow("escape") << u"Escape"_s << QList{true, false} << QList{false, false};
        QTest::newRow("other result") << u"99"_s << QList{true, false} << QList{true, false};
    }
    // While it is open the dialog is published and shows its title, its buttons and the
    // wrapped message, which keeps its own point before the one the template adds.
    void answers()
    {
        QFETCH(QString, action);
        QStringList seen;
        SetModalDialogHook([&](QDialog &Dialog) -> int {
            seen << Dialog.windowTitle() << static_cast<TReaderErrorDlg &>(Dialog).MessageText().section(u'?', 0, 0);
            for (QPushButton *button : Dialog.findChildren<QPushButton *>())
                seen << button->text();
            if (ReaderErrorDlg != &Dialog || !Dialog.findChild<QLabel *>(u"LerrMess"_s)->wordWrap())
                seen << u"unpublished or unwrapped"_s;
            if (action == u"Escape")
                QTest::keyClick(&Dialog, Qt::Key_Escape);
            else if (auto *button = Dialog.findChild<QPushButton *>(action))
                button->click();
            return action.toInt() ? action.toInt() : Dialog.result();
        });
        QFETCH(QList<bool>, flags);
        ideRerrDlg::Initialize();
        ReaderErrorHandler(u"Foo is bad."_s, flags[0], flags[1]);
        ideRerrDlg::Finalize();
        QVERIFY(!ReaderErrorHandler && !ReaderErrorDlg);
        QCOMPARE(seen, (QStringList{u"Error Reading Form"_s, u"Foo is bad..  Ignore the error and continue"_s,
                                    u"&Ignore"_s, u"Cancel"_s, u"Ignore &All"_s}));
        QTEST(flags, "after");
    }
};

QTEST_MAIN(tst_ReaderErrorDlg)
#include "tst_rerrdlg.moc"
