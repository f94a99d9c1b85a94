#pragma once

#include <string>
#include <string_view>

namespace quillon {

/// One rule that says what is indexed. It is a plain value, made anew whenever the rules are read.
class SearchBaseLocation
{
public:
    /// The tags of the kinds.
    struct Types
    {
        static constexpr std::string_view INCLUDE_PATH = "include_path";
        static constexpr std::string_view EXCLUDE_PATTERN = "exclude_pattern";
        static constexpr std::string_view INCLUDE_FILE_PATTERN = "include_file_pattern";
    };

    virtual ~SearchBaseLocation() = default;

    const std::string &type() const { return type_; }
    /// Returns the first part of the label in a list: the folder's path or the pattern.
    virtual std::string mainText() const { return {}; }
    /// Returns what follows the main text in a list and names the kind. It begins with a blank.
    virtual std::string_view kindSuffix() const { return {}; }

protected:
    explicit SearchBaseLocation(std::string_view type) : type_(type) {}
    SearchBaseLocation(const SearchBaseLocation &) = default;
    SearchBaseLocation &operator=(const SearchBaseLocation &) = default;

private:
    std::string type_;
};

/// A folder to index with everything below it.
class IncludePathSearchBaseLocation final : public SearchBaseLocation
{
public:
    explicit IncludePathSearchBaseLocation(std::string url);
    /// The folder's absolute path.
    const std::string &url() const { return url_; }
    std::string mainText() const override { return url_; }
    std::string_view kindSuffix() const override { return " – Include Folder, Recursive"; }

private:
    std::string url_;
};

/// A text whose occurrence in a folder's path keeps the folder out; never a glob.
class ExcludePatternSearchBaseLocation final : public SearchBaseLocation
{
public:
    explicit ExcludePatternSearchBaseLocation(std::string pattern);
    const std::string &pattern() const { return pattern_; }
    std::string mainText() const override { return pattern_; }
    std::string_view kindSuffix() const override { return " – Exclude Pattern"; }

private:
    std::string pattern_;
};

/// A file-name extension, without the dot, whose files are indexed as folders are.
class IncludeFilePatternSearchBaseLocation final : public SearchBaseLocation
{
public:
    explicit IncludeFilePatternSearchBaseLocation(std::string pattern);
    const std::string &pattern() const { return pattern_; }
    std::string mainText() const override { return pattern_; }
    std::string_view kindSuffix() const override { return " – Include Files with Extension"; }

private:
    std::string pattern_;
};

} // namespace quillon
