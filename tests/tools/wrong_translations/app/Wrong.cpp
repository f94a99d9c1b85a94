// A window whose texts each go wrong in one way in the catalogues beside it.
namespace quillon {

class Window : public QWidget
{
    Q_OBJECT

    void show(int count)
    {
        label(tr("New text"));
        label(tr("Unfinished text"));
        label(tr("%1 of %2").arg(count).arg(count));
        label(tr("%n folder(s)", nullptr, count));
        label(tr("&Search"));
        label(tr("Show in Finder"));
    }
};

class Forgetful : public QWidget
{
    void show() { label(tr("Lost text")); }
};

} // namespace quillon
