#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <obsidra/hc.h>

// Reads one file format into a segment. A host registers one per file extension with the
// HIOManager (HDB::GetHIOManager) so that "Load Into Segment" and the viewer read that format.
class HInputHandler {
public:
    virtual ~HInputHandler() = default;
    // Reads the file into the segment of that key; false when it cannot, reported through the
    // database's error handler and with the segment left as it was.
    virtual bool FileInputByKey(const char* filename, HC_KEY segment, const char* options) = 0;
};

// The database's own metafile format (".hmf", docs/formats.md).
class HIOUtilityMetafile : public HInputHandler {
public:
    bool FileInputByKey(const char* filename, HC_KEY segment, const char* options) override;
};

enum class HFileInputResult {
    Success,
    NoExtension, // the file name has no extension
    NoHandler,   // no handler reads that extension
    Fail,        // the handler could not read the file
};

// Input handlers by file extension. Extensions are given without the dot and compared without
// regard to case; the metafile reader is registered for "hmf" from the start.
class HIOManager {
public:
    HIOManager();

    // Registers a handler for an extension, replacing the one registered before; a null handler
    // removes it. One handler may serve several extensions.
    void RegisterInputHandler(std::string_view extension, std::shared_ptr<HInputHandler> handler);
    // The handler of an extension, or null.
    HInputHandler* GetInputHandler(std::string_view extension) const;
    // Reads a file into a segment by the handler of its name's extension.
    HFileInputResult Read(const char* filename, HC_KEY segment, const char* options = "") const;

private:
    std::map<std::string, std::shared_ptr<HInputHandler>> m_inputHandlers;
};
