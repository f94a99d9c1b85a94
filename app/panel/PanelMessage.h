#pragma once

#include <QWidget>

class QAbstractButton;
class QLabel;
class QPushButton;

namespace quillon {

class ElidedLabel;

/// The message that takes the place of the rows when there are none: a short line in bold and a
/// quieter one that says what to do. If no folder is searched yet, two buttons do it.
class PanelMessage : public QWidget
{
    Q_OBJECT

public:
    explicit PanelMessage(QWidget *parent);

    void setMessage(const QString &title, const QString &sentence);
    QString title() const;
    QString sentence() const;
    void setOffersFolders(bool offersFolders);
    QAbstractButton &homeFolderButton();
    QAbstractButton &preferencesButton();

Q_SIGNALS:
    void titleChanged();

private:
    ElidedLabel *title_;
    QLabel *sentence_;
    QWidget *buttons_;
    QPushButton *homeFolder_;
    QPushButton *preferences_;
};

} // namespace quillon
