// The command soak: random sequences of what a user can do in the segment browser (menu
// commands with valid and invalid texts, label edits, searches with replace, unset and delete,
// cut and paste, optimise, save and load of subtrees) on random scenes, through the entry points
// the dialog uses. After every step the database checks itself; at the end the whole scene is
// saved, read into an empty database and saved again, and the two texts must agree.
//
//   obsidra_soak [--steps N] [--seed S]     (or OBSIDRA_SOAK_STEPS, OBSIDRA_SOAK_SEED)
//
// The seed is printed first: a failure replays with the same seed and step count.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <unistd.h>

#include <obsidra/hc_check.h>

#include "scenetree/optimize_options.h"
#include "scenetree/segment_commands.h"
#include "soak/soak_scene.h"

namespace {

using obsidra::soak::TreeSession;

size_t g_errors = 0;

// The messages are what invalid input should give; OBSIDRA_SOAK_VERBOSE prints them.
void CountError(const char* function, const char* message) {
    ++g_errors;
    static const bool verbose = std::getenv("OBSIDRA_SOAK_VERBOSE") != nullptr;
    if (verbose) std::printf("error %zu: %s: %s\n", g_errors, function, message);
}

std::string ReadFile(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool IsAlive(HC_KEY key) {
    return key != 0 && key != -1 && HC_Show_Existence_By_Key(key, "self") > 0;
}

bool IsSegment(HC_KEY key) {
    if (!IsAlive(key)) return false;
    char type[HC_TEXT_MAX];
    HC_Show_Key_Type(key, type);
    return std::strcmp(type, "segment") == 0;
}

std::string SegmentPath(HC_KEY key) {
    char path[HC_TEXT_MAX];
    HC_Show_Segment(key, path);
    return path;
}

// What a person would answer the commands' dialogs: now the text as shown, now another text,
// now Cancel; files in the soak's folder, with or without an extension; random optimise
// choices. A "Refresh" rebuilds the tree at once.
class ScriptedHost : public obsidra::scenetree::SegmentCommandHost {
public:
    ScriptedHost(std::mt19937& random, const std::string& folder, std::function<void()> rebuild)
        : m_random(random), m_folder(folder), m_rebuild(std::move(rebuild)) {}

    // Segment names for "Add Include": a library segment or the name of nothing, never a
    // segment of the scene, whose include might close a cycle (Library()).
    bool namingIncludes = false;

    std::optional<std::string> EditText(const std::string& text, const std::string&) override {
        if (OneIn(6)) return std::nullopt;
        if (namingIncludes)
            return OneIn(4) ? std::string("no such segment") : std::string("/soak library/door");
        if (OneIn(3)) return text;
        return obsidra::soak::RandomText(m_random);
    }
    std::optional<std::string> OpenFileName(const obsidra::scenetree::FileRequest&) override {
        return File();
    }
    std::optional<std::string> SaveFileName(const obsidra::scenetree::FileRequest&) override {
        return File();
    }
    std::optional<obsidra::scenetree::OptimizeOptions> OptimizeChoices() override {
        if (OneIn(6)) return std::nullopt;
        return RandomOptimizeOptions(m_random);
    }
    void ShowMessage(const std::string&) override {}
    void RebuildTree() override { m_rebuild(); }

    static obsidra::scenetree::OptimizeOptions RandomOptimizeOptions(std::mt19937& random) {
        auto next = [&random](int high) {
            return std::uniform_int_distribution<int>(0, high)(random);
        };
        obsidra::scenetree::OptimizeOptions options;
        for (int* choice :
             {&options.collapseMatrices, &options.localizeMatrices, &options.removeDuplicate,
              &options.extractAttributes, &options.generateMapping, &options.userDataMerge,
              &options.userDataLocalize, &options.namesDiscard, &options.namesRecord,
              &options.namesSequence})
            *choice = next(1);
        options.includes = next(2);
        options.shells = next(2);
        options.userData = next(2);
        options.reorganize = next(3);
        return options;
    }

private:
    bool OneIn(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random) == 0; }
    std::optional<std::string> File() {
        if (OneIn(6)) return std::nullopt;
        static const char* const kNames[] = {"/part.hmf",    "/part.hmf", "/part",
                                             "/missing.hmf", "/",         "/part.unknown"};
        return m_folder + kNames[std::uniform_int_distribution<int>(0, 5)(m_random)];
    }

    std::mt19937& m_random;
    std::string m_folder;
    std::function<void()> m_rebuild;
};

class Soak {
public:
    Soak(unsigned seed, const std::string& folder)
        : m_random(seed), m_folder(folder), m_session(std::make_unique<TreeSession>()) {
        m_attributes = obsidra::soak::AttributeNames(m_session->Tree());
        Grow();
    }

    // One random step; returns its name.
    const char* Step() {
        static const struct {
            const char* name;
            int weight;
            void (Soak::*run)();
        } kSteps[] = {
            {"expand", 12, &Soak::Expand},
            {"select", 6, &Soak::Select},
            {"add attribute", 8, &Soak::AddAttribute},
            {"edit", 10, &Soak::Edit},
            {"rename", 4, &Soak::Rename},
            {"undefine", 4, &Soak::Undefine},
            {"delete", 3, &Soak::Delete},
            {"flush", 2, &Soak::Flush},
            {"search", 8, &Soak::Search},
            {"key search", 3, &Soak::KeySearch},
            {"optimize", 2, &Soak::Optimize},
            {"save and load", 2, &Soak::SaveAndLoad},
            {"create child", 3, &Soak::CreateChild},
            {"include or style", 3, &Soak::IncludeOrStyle},
            {"renumber", 2, &Soak::Renumber},
            {"refresh", 1, &Soak::Refresh},
            // Cut and paste, among others, come only through the menu, as the browser runs them.
            {"menu command", 29, &Soak::MenuCommand},
        };
        static const int total = [] {
            int sum = 0;
            for (const auto& step : kSteps)
                sum += step.weight;
            return sum;
        }();
        int pick = Next(0, total - 1);
        for (const auto& step : kSteps) {
            if (pick < step.weight) {
                (this->*step.run)();
                // A user may delete or cut the model itself: the browser then starts anew. Loads
                // and pastes into a segment's own subtree double it, and loads with followed
                // includes add to the library each time: past a size the scene starts again, or
                // every step would take longer than the last.
                const int objects = Count(HC_Create_Segment("/"), "everything");
                if (!IsSegment(m_session->ModelKey()) || objects > kMaxObjects) {
                    m_session.reset();
                    HC_Reset_System();
                    ++restarts;
                    m_session = std::make_unique<TreeSession>();
                }
                if (Count(m_session->ModelKey(), "segments") < 5) Grow();
                return step.name;
            }
            pick -= step.weight;
        }
        return "";
    }

    // Saves the scene, reads it into an empty database and saves it again; false (with the two
    // files left for a look) when the texts differ.
    bool RoundTrip(std::string& first, std::string& second) {
        first = m_folder + "/scene.hmf";
        second = m_folder + "/again.hmf";
        HC_Write_Metafile("/", first.c_str(), "save state = textures");
        m_session.reset();
        HC_Reset_System();
        HC_Read_Metafile(first.c_str(), "/", "");
        HC_Write_Metafile("/", second.c_str(), "save state = textures");
        return ReadFile(first) == ReadFile(second);
    }

    std::map<std::string, int> counts;
    int restarts = 0;

private:
    int Next(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    bool OneIn(int n) { return Next(0, n - 1) == 0; }
    HoopsSegmentTree& Tree() { return m_session->Tree(); }

    TreeGraphItem* AnyNode() {
        std::vector<TreeGraphItem*> nodes = m_session->Nodes();
        return nodes.empty() ? nullptr : nodes[Next(0, int(nodes.size()) - 1)];
    }
    // A node that passes the test, or any node now and then: commands must refuse what they
    // cannot take.
    template <typename Test>
    TreeGraphItem* NodeWhere(Test&& test, bool strict = false) {
        if (!strict && OneIn(10)) return AnyNode();
        std::vector<TreeGraphItem*> nodes = m_session->Nodes();
        std::erase_if(nodes, [&](TreeGraphItem* node) { return !test(node); });
        return nodes.empty() ? nullptr : nodes[Next(0, int(nodes.size()) - 1)];
    }
    TreeGraphItem* SegmentNode() {
        return NodeWhere([](TreeGraphItem* node) { return IsSegment(node->GetKey()); });
    }
    // A segment of the model's own subtree, not one the tree shows through an include: what is
    // pasted, loaded or included there cannot close an include cycle (Library()).
    TreeGraphItem* SceneSegmentNode() {
        const std::string model = SegmentPath(m_session->ModelKey());
        return NodeWhere(
            [&model](TreeGraphItem* node) {
                if (!IsSegment(node->GetKey())) return false;
                const std::string path = SegmentPath(node->GetKey());
                return path == model || path.rfind(model + "/", 0) == 0;
            },
            true);
    }
    HC_KEY SomeKey() {
        if (OneIn(8)) return -Next(2, 100000); // most likely dead or never made
        TreeGraphItem* node = AnyNode();
        return node ? node->GetKey() : 0;
    }
    static constexpr int kMaxObjects = 20000;

    // How many things of the types lie in the segment and below it.
    static int Count(HC_KEY segment, const char* types) {
        HC_Open_Segment_By_Key(segment);
        HC_Begin_Contents_Search("...", types);
        int count = 0;
        HC_Show_Contents_Count(&count);
        HC_End_Contents_Search();
        HC_Close_Segment();
        return count;
    }
    void Grow() {
        HC_KEY model = m_session->ModelKey();
        HC_Open_Segment_By_Key(model);
        HC_KEY part = HC_Create_Segment("");
        HC_Close_Segment();
        obsidra::soak::BuildRandomScene(part, m_random, Next(5, 30));
        m_session->Rebuild();
        m_session->ExpandAll(2);
    }

    void Expand() {
        if (TreeGraphItem* node = AnyNode()) Tree().OnExpandItem(node, !OneIn(5));
    }
    void Select() {
        TreeGraphItem* node = AnyNode();
        Tree().OnSelectItem(node);
        if (node) Tree().InformationLines(node);
    }
    void AddAttribute() {
        TreeGraphItem* node = NodeWhere([this](TreeGraphItem* n) {
            return IsAlive(n->GetKey()) && !Tree().IsAttributeLine(n);
        });
        const std::string& name = m_attributes[Next(0, int(m_attributes.size()) - 1)];
        TreeGraphItem* line = Tree().AddAttribute(node, OneIn(3) ? 0 : -1, name.c_str());
        if (line && !OneIn(4)) Tree().ApplyEditedText(line, obsidra::soak::RandomText(m_random));
    }
    void Edit() {
        TreeGraphItem* node = AnyNode();
        if (!node) return;
        std::string text = Tree().GetEditText(node);
        if (text.empty() || OneIn(2)) {
            text = obsidra::soak::RandomText(m_random);
        } else if (OneIn(2)) {
            // The text as shown, with a number or a word changed: the way edits are made.
            size_t at = Next(0, int(text.size()));
            text.insert(at, obsidra::soak::RandomText(m_random));
        }
        Tree().ApplyEditedText(node, text);
    }
    void Rename() {
        Tree().OnEndLabelEdit(SegmentNode(), obsidra::soak::RandomText(m_random).c_str());
    }
    void Undefine() {
        Tree().UndefineAttribute(
            NodeWhere([this](TreeGraphItem* n) { return Tree().IsAttributeLine(n); }));
    }
    void Delete() {
        TreeGraphItem* node = AnyNode();
        if (node && node != Tree().GetTopNode()) Tree().DeleteNode(node);
    }
    void Flush() {
        static const char* const kTypes[] = {"geometry",   "everything", "segments", "shells",
                                             "attributes", "includes",   "bogus",    ""};
        Tree().Flush(SegmentNode(), kTypes[Next(0, 7)]);
    }
    void Search() {
        const auto kind = static_cast<obsidra::scenetree::SearchKind>(Next(1, 10));
        std::string text = obsidra::soak::RandomText(m_random);
        if (OneIn(3)) {
            static const char* const kSeconds[] = {"$$unset", "$$delete", "$$blue", "$$"};
            text = text.substr(0, text.find("$$")) + kSeconds[Next(0, 3)];
        }
        Tree().Search(kind, text, OneIn(3) ? SegmentNode() : nullptr);
    }
    void KeySearch() {
        const HC_KEY key = SomeKey();
        if (OneIn(2)) {
            Tree().SearchKey(key);
        } else {
            char text[32];
            std::snprintf(text, sizeof text, "%llX", static_cast<unsigned long long>(key));
            Tree().FindAndSelectByKeyText(OneIn(6) ? "not a key" : text);
        }
    }
    void Optimize() {
        TreeGraphItem* node = SegmentNode();
        if (!node || !IsSegment(node->GetKey())) return;
        const auto options = ScriptedHost::RandomOptimizeOptions(m_random);
        std::string text = obsidra::scenetree::ComposeOptimizeOptions(options);
        if (OneIn(8)) text = obsidra::soak::RandomText(m_random);
        HC_Optimize_Segment_Tree(SegmentPath(node->GetKey()).c_str(), text.c_str());
        m_session->Rebuild();
    }
    void SaveAndLoad() {
        TreeGraphItem* from = SegmentNode();
        TreeGraphItem* into = SceneSegmentNode();
        if (!from || !into || !IsSegment(from->GetKey()) || !IsSegment(into->GetKey())) return;
        const std::string file = m_folder + "/part.hmf";
        HC_Write_Metafile(SegmentPath(from->GetKey()).c_str(), file.c_str(),
                          "follow cross-references, save state = textures");
        HC_Open_Segment_By_Key(into->GetKey());
        HC_Read_Metafile(file.c_str(), OneIn(2) ? "" : "loaded", "");
        HC_Close_Segment();
        Tree().RefreshNode(into);
    }
    void CreateChild() {
        TreeGraphItem* node = SceneSegmentNode();
        if (!node || !IsSegment(node->GetKey())) return;
        HC_Open_Segment_By_Key(node->GetKey());
        const HC_KEY child = HC_Create_Segment(OneIn(2) ? "" : "new");
        HC_Close_Segment();
        Tree().AddChildNode(node, child);
    }
    // Includes name library segments or keys that are no segment, never a segment of the scene,
    // which might close a cycle (Library()).
    void IncludeOrStyle() {
        TreeGraphItem* node = SceneSegmentNode();
        if (!node || !IsSegment(node->GetKey())) return;
        const std::vector<HC_KEY> library = obsidra::soak::Library();
        const bool style = OneIn(2);
        HC_KEY target = library[Next(0, int(library.size()) - 1)];
        if (const HC_KEY other = SomeKey(); OneIn(6) && (style || !IsSegment(other)))
            target = other;
        HC_Open_Segment_By_Key(node->GetKey());
        const HC_KEY link =
            style ? HC_Style_Segment_By_Key(target) : HC_Include_Segment_By_Key(target);
        HC_Close_Segment();
        if (link) Tree().InsertStyleOrIncludeNode(link, node);
    }
    void Renumber() {
        const HC_KEY key = SomeKey();
        if (!IsAlive(key)) return;
        HC_Renumber_Key(key, OneIn(4) ? HC_Show_Original_Key(key) : Next(1, 60),
                        OneIn(2) ? "global" : "local");
        m_session->Rebuild();
    }
    // A command of the browser's context menus, as the dialog runs it. Commands that put
    // something into a segment get a segment of the scene (see ScriptedHost).
    void MenuCommand() {
        using namespace obsidra::scenetree;
        static const int kCommands[] = {
            kCmdUndefineAttribute,
            kCmdDeleteSegment,
            kCmdZoomToSegment,
            kCmdFlushSegmentContents,
            kCmdCreateChildSegment,
            kCmdActivateManipulator,
            kCmdCutSegment,
            kCmdPasteSegment,
            kCmdEdit,
            kCmdShowBounding,
            kCmdSaveToHmf,
            kCmdOptimize,
            kCmdLoadIntoSegment,
            kCmdAddStyle,
            kCmdAddInclude,
            kCmdGotoStyleInclude,
            0,
            1,
        };
        int command = kCommands[Next(0, int(std::size(kCommands)) - 1)];
        if (command == 0) {
            const auto attributes = OneIn(2) ? AddAttributeCommands() : ShowNetAttributeCommands();
            command = attributes[Next(0, int(attributes.size()) - 1)].commandId;
        }
        const bool intoScene = command == kCmdPasteSegment || command == kCmdLoadIntoSegment ||
                               command == kCmdAddInclude || command == kCmdCreateChildSegment;
        TreeGraphItem* node = intoScene ? SceneSegmentNode() : AnyNode();
        ScriptedHost host(m_random, m_folder, [this] { m_session->Rebuild(); });
        host.namingIncludes = command == kCmdAddInclude;
        SegmentCommands(Tree(), host).Run(command, node);
    }
    void Refresh() {
        m_session->Rebuild();
        m_session->ExpandAll(Next(1, 3));
    }

    std::mt19937 m_random;
    std::string m_folder;
    std::unique_ptr<TreeSession> m_session;
    std::vector<std::string> m_attributes;
};

unsigned long long Setting(int argc, char** argv, const char* option, const char* variable,
                           unsigned long long fallback) {
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], option) == 0) return std::strtoull(argv[i + 1], nullptr, 10);
    const char* value = std::getenv(variable);
    return value && *value ? std::strtoull(value, nullptr, 10) : fallback;
}

} // namespace

int main(int argc, char** argv) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const unsigned seed = static_cast<unsigned>(
        Setting(argc, argv, "--seed", "OBSIDRA_SOAK_SEED",
                std::chrono::duration_cast<std::chrono::microseconds>(now).count()));
    const unsigned long long steps = Setting(argc, argv, "--steps", "OBSIDRA_SOAK_STEPS", 10000);
    std::printf("soak: seed %u, %llu steps (replay: --seed %u --steps %llu)\n", seed, steps, seed,
                steps);
    std::fflush(stdout);
    const std::string folder =
        (std::filesystem::temp_directory_path() / ("obsidra_soak_" + std::to_string(::getpid())))
            .string();
    std::filesystem::create_directories(folder);
    HC_Define_Error_Handler(&CountError);
    const auto start = std::chrono::steady_clock::now();
    int status = 0;
    {
        Soak soak(seed, folder);
        std::vector<char> report(4096);
        for (unsigned long long step = 1; step <= steps && status == 0; ++step) {
            const char* name = soak.Step();
            ++soak.counts[name];
            if (HC_Check_Database(report.data(), static_cast<int>(report.size())) != 0) {
                std::printf("soak: step %llu (%s) broke the database:\n%s", step, name,
                            report.data());
                status = 1;
            }
        }
        std::string first, second;
        if (status == 0 && !soak.RoundTrip(first, second)) {
            std::printf("soak: the scene read back differs: diff %s %s\n", first.c_str(),
                        second.c_str());
            status = 1;
        }
        if (status == 0 && HC_Check_Database(report.data(), static_cast<int>(report.size())) != 0) {
            std::printf("soak: the scene read back is broken:\n%s", report.data());
            status = 1;
        }
        for (const auto& [name, count] : soak.counts)
            std::printf("soak:   %-18s %d\n", name.c_str(), count);
        std::printf("soak: the scene started again %d times\n", soak.restarts);
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("soak: %s after %.1f s; %zu errors reported and survived\n",
                status ? "FAILED" : "passed", seconds, g_errors);
    if (status == 0) std::filesystem::remove_all(folder);
    return status;
}
