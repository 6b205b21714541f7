#include "platform/HelpArchive.h"

#include <chm_lib.h>

#include <algorithm>
#include <system_error>

namespace tallyhorn {
namespace {

struct CloseArchive {
    void operator()(chmFile* archive) const { chm_close(archive); }
};

class ChmArchive final : public HelpArchive {
public:
    explicit ChmArchive(chmFile* archive) : archive_(archive) {}

    std::optional<std::string> Read(const std::string& name, std::size_t maximum) override {
        const std::string path = name.starts_with('/') ? name : "/" + name;
        if (path.size() > CHM_MAX_PATHLEN || path.find('\0') != std::string::npos)
            return std::nullopt;
        chmUnitInfo unit{};
        if (chm_resolve_object(archive_.get(), path.c_str(), &unit) != CHM_RESOLVE_SUCCESS ||
            unit.length > maximum)
            return std::nullopt;
        std::string content(static_cast<std::size_t>(unit.length), '\0');
        const LONGINT64 read =
            chm_retrieve_object(archive_.get(), &unit, reinterpret_cast<unsigned char*>(content.data()), 0,
                                static_cast<LONGINT64>(unit.length));
        if (read < 0 || static_cast<LONGUINT64>(read) != unit.length)
            return std::nullopt;
        return content;
    }

private:
    const std::unique_ptr<chmFile, CloseArchive> archive_;
};

}  // namespace

std::unique_ptr<HelpArchive> OpenHelpArchive(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return nullptr;
    chmFile* const archive = chm_open(file.c_str());
    return archive == nullptr ? nullptr : std::make_unique<ChmArchive>(archive);
}

}  // namespace tallyhorn
