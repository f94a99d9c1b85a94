#pragma once

#include "app/panel/PanelSource.h"

namespace quillon {

class FrontFinderSearch;
class SearchBase;
class SearchBaseBuilder;
class SearchBaseFinder;

/// The search base as the panel sees it.
class SearchBaseSource : public PanelSource
{
public:
    SearchBaseSource(SearchBase &searchBase, SearchBaseFinder &finder, SearchBaseBuilder &builder,
                     FrontFinderSearch &frontFinderSearch);

    std::vector<SearchBaseResultRef> search(const std::string &query) const override;
    std::vector<SearchBaseResultRef> mostAccessedResults() const override;
    void recordUse(const SearchBaseResultRef &result) override;
    State state() const override;
    bool isFrontWindowSearched() const override;
    void refreshFrontWindow(std::function<void()> completion) override;
    void forgetFrontWindow() override;
    void addHomeFolder() override;

private:
    SearchBase &searchBase_;
    SearchBaseFinder &finder_;
    SearchBaseBuilder &builder_;
    FrontFinderSearch &frontFinderSearch_;
};

} // namespace quillon
