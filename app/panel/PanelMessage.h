#pragma once

#include <QWidget>

class QAbstractButton;
class QPushButton;

namespace quillon {

/// The message that takes the place of the rows when there are none: a short line in bold and a
/// quieter one that says what to do. If no folder is searched yet, two buttons do it.
class PanelMessage : public QWidget
{
    Q_OBJECT

public:
    explicit PanelMessage(QWidget *parent);

    void setMessage(const QString &title, const QString &sentence);
    QString title() const { return title_; }
    QString sentence() const { return sentence_; }
    void setOffersFolders(bool offersFolders);
    QAbstractButton &homeFolderButton();
    QAbstractButton &preferencesButton();

Q_SIGNALS:
    void titleChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Places
    {
        QRect title;
        QRect sentence;
        QRect buttons;
    };
    /// Returns the places, which are in the middle, one below the other.
    Places places() const;
    QFont titleFont() const;
    void arrange();

    QString title_;
    QString sentence_;
    QWidget *buttons_;
    QPushButton *homeFolder_;
    QPushButton *preferences_;
};

} // namespace quillon
