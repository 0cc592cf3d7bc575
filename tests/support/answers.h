// The user who presses buttons and answers file dialogs and message boxes in a test.
#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <utility>

/// The one with this text.
inline QPushButton *button(const QWidget &page, const QString &text)
{
    const auto buttons = page.findChildren<QPushButton *>();
    return *std::find_if(buttons.begin(), buttons.end(), [&](auto *each) { return each->text() == text; });
}

/// Types this name into an open file dialog and presses its button.
inline void typeFile(QFileDialog *dialog, const QString &path)
{
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setDirectory(QFileInfo(path).path());
    dialog->findChild<QLineEdit *>()->setText(QFileInfo(path).fileName());
    static_cast<QDialog *>(dialog)->accept();
}

// Answers every file dialog with a file and every box with the return key, and remembers the boxes.
class Answers : public QObject
{
public:
    explicit Answers(QString chosen = QString()) : file(std::move(chosen)) { look(); }

    std::function<bool(QDialog *)> answer; // tried before the usual one
    QStringList boxes;                     // icon and title
    QString file;

private:
    void look()
    {
        // A new timer each time: a repeating one would not fire in the event loop of what it opens.
        QTimer::singleShot(20, this, &Answers::look);
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog == answered)
            return;
        answered = dialog;
        auto *box = qobject_cast<QMessageBox *>(dialog);
        if (box)
            boxes += QString::number(box->icon()) + QLatin1Char(' ') + box->windowTitle();
        if (answer && answer(dialog))
            return;
        if (box)
            QTest::keyClick(box, Qt::Key_Return);
        else
            typeFile(qobject_cast<QFileDialog *>(dialog), file);
        answered = nullptr;
    }

    QPointer<QDialog> answered;
};
