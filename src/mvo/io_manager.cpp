#include "mvo/io_manager.h"

#include <cctype>

#include "mvo/utility.h"

namespace {

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

} // namespace

bool HIOUtilityMetafile::FileInputByKey(const char* filename, HC_KEY segment, const char* options) {
    HC_Open_Segment_By_Key(segment);
    const bool read = HC_Read_Metafile(filename, ".", options) != 0;
    HC_Close_Segment();
    return read;
}

HIOManager::HIOManager() {
    RegisterInputHandler("hmf", std::make_shared<HIOUtilityMetafile>());
}

void HIOManager::RegisterInputHandler(std::string_view extension,
                                      std::shared_ptr<HInputHandler> handler) {
    if (handler)
        m_inputHandlers[Lower(extension)] = std::move(handler);
    else
        m_inputHandlers.erase(Lower(extension));
}

HInputHandler* HIOManager::GetInputHandler(std::string_view extension) const {
    auto found = m_inputHandlers.find(Lower(extension));
    return found == m_inputHandlers.end() ? nullptr : found->second.get();
}

HFileInputResult HIOManager::Read(const char* filename, HC_KEY segment, const char* options) const {
    const std::string extension = HUtility::FindFileNameExtension(filename ? filename : "");
    if (extension.empty()) return HFileInputResult::NoExtension;
    HInputHandler* handler = GetInputHandler(extension);
    if (!handler) return HFileInputResult::NoHandler;
    return handler->FileInputByKey(filename, segment, options ? options : "")
               ? HFileInputResult::Success
               : HFileInputResult::Fail;
}
