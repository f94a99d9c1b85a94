#include "app/Translations.h"
#include "app/widgets/QuillonStyle.h"

#include <QApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

/// Sees every text on its way to the user and looks it up in the German catalogue, which has them
/// all. A text that is missing there was written in a place where the search for texts does not
/// find it.
class CatalogueWatch : public QTranslator
{
public:
    CatalogueWatch() { isLoaded_ = german_.load(u":/quillon/translations/quillon_de.qm"_s); }

    bool isEmpty() const override { return !isLoaded_; }
    QString translate(const char *context, const char *text, const char *comment,
                      int number) const override
    {
        const bool isWord = std::ranges::any_of(std::string_view(text), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        });
        // The toolkit's own classes have other catalogues.
        if (isWord && !std::string_view(context).starts_with('Q') &&
            german_.translate(context, text, comment, number).isEmpty())
            ADD_FAILURE() << "No catalogue has \"" << text << "\" of " << context;
        return {};
    }

private:
    QTranslator german_;
    bool isLoaded_ = false;
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    Q_INIT_RESOURCE(quillon);
    QApplication application(argc, argv);
    QApplication::setStyle(new quillon::QuillonStyle);
    quillon::translateApplication(application, {u"en"_s});
    CatalogueWatch watch;
    QApplication::installTranslator(&watch);
    return RUN_ALL_TESTS();
}
