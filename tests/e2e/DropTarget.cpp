// drop_target FILE shows a window that accepts what is dropped on it, and writes it to the file.
//
// It writes "text/uri-list" and "text/plain" as they came, each with a null byte at its end. The
// title of the window is "takes it" while something is over it.

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QSaveFile>
#include <QWidget>

namespace {

class DropTarget : public QWidget
{
public:
    explicit DropTarget(const QString &record) : record_(record)
    {
        setAcceptDrops(true);
        resize(1200, 160);
    }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { event->acceptProposedAction(); }
    void dragMoveEvent(QDragMoveEvent *event) override
    {
        event->acceptProposedAction();
        setWindowTitle(QStringLiteral("takes it"));
    }
    void dragLeaveEvent(QDragLeaveEvent *) override { setWindowTitle({}); }
    void dropEvent(QDropEvent *event) override
    {
        event->acceptProposedAction();
        QSaveFile file(record_);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("the drop cannot be recorded");
        for (const char *type : {"text/uri-list", "text/plain"})
            file.write(event->mimeData()->data(QLatin1String(type)) + '\0');
        file.commit();
    }

private:
    QString record_;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    DropTarget target(QApplication::arguments().at(1));
    target.show();
    return QApplication::exec();
}
