// The user who answers file dialogs and message boxes in a test.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <utility>

// Answers every file dialog with a file and closes every box, and remembers the boxes.
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
        const bool overwrite = box != nullptr && qobject_cast<QFileDialog *>(box->parent()) != nullptr;
        if (box && !overwrite)
            boxes += QString::number(box->icon()) + QLatin1Char(' ') + box->windowTitle();
        if (overwrite)
            box->button(QMessageBox::Yes)->click();
        else if (answer && answer(dialog))
            return;
        else if (box)
            box->close();
        else if (auto *chooser = qobject_cast<QFileDialog *>(dialog)) {
            chooser->setDirectory(QFileInfo(file).path());
            chooser->findChild<QLineEdit *>()->setText(QFileInfo(file).fileName());
            QMetaObject::invokeMethod(chooser, "accept");
        }
        answered = nullptr;
    }

    QPointer<QDialog> answered;
};
