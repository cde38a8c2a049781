#include "host/ifc/ifc_mesh_stream.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <unistd.h>

namespace obsidra::host::ifc {

namespace {

// Frames larger than this are not ours: a chunk's meshes take a few MiB at most.
constexpr std::uint32_t kMaxFrame = 1u << 30;

template <typename T>
void Put(std::string& out, const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <typename T>
void PutArray(std::string& out, const std::vector<T>& values) {
    Put(out, static_cast<std::uint32_t>(values.size()));
    out.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
}

void PutText(std::string& out, const std::string& text) {
    Put(out, static_cast<std::uint32_t>(text.size()));
    out.append(text);
}

class Reader {
public:
    explicit Reader(std::string_view bytes) : m_bytes(bytes) {}

    template <typename T>
    bool Get(T& value) {
        if (m_bytes.size() < sizeof value) return false;
        std::memcpy(&value, m_bytes.data(), sizeof value);
        m_bytes.remove_prefix(sizeof value);
        return true;
    }
    template <typename T>
    bool GetArray(std::vector<T>& values) {
        std::uint32_t count = 0;
        if (!Get(count) || m_bytes.size() / sizeof(T) < count) return false;
        values.resize(count);
        std::memcpy(values.data(), m_bytes.data(), count * sizeof(T));
        m_bytes.remove_prefix(count * sizeof(T));
        return true;
    }
    bool GetText(std::string& text) {
        std::uint32_t count = 0;
        if (!Get(count) || m_bytes.size() < count) return false;
        text.assign(m_bytes.substr(0, count));
        m_bytes.remove_prefix(count);
        return true;
    }
    bool AtEnd() const { return m_bytes.empty(); }

private:
    std::string_view m_bytes;
};

// Moves size bytes with move (a read or a write of fd), which may move fewer at a time.
template <typename Byte, typename Move>
bool Transfer(Byte* bytes, std::size_t size, Move move) {
    while (size > 0) {
        const ssize_t done = move(bytes, size);
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) return false;
        bytes += done;
        size -= static_cast<std::size_t>(done);
    }
    return true;
}

bool WriteAll(int fd, const char* bytes, std::size_t size) {
    return Transfer(bytes, size,
                    [fd](const char* at, std::size_t n) { return ::write(fd, at, n); });
}

bool ReadAll(int fd, char* bytes, std::size_t size) {
    return Transfer(bytes, size, [fd](char* at, std::size_t n) { return ::read(fd, at, n); });
}

} // namespace

void EncodeMeshed(const ModelData& data, int chunk, const std::vector<int>& products,
                  const std::vector<std::string>& warnings, std::string& frame) {
    frame.clear();
    Put(frame, static_cast<std::int32_t>(chunk));
    for (int index : products) {
        const ProductData& p = data.products[index];
        Put(frame, p.transform);
        Put(frame, static_cast<std::uint32_t>(p.meshes.size()));
        for (const MeshPart& part : p.meshes) {
            Put(frame, part.colour);
            Put(frame, static_cast<std::uint8_t>(part.coloured));
            PutArray(frame, part.points);
            PutArray(frame, part.faces);
        }
    }
    Put(frame, static_cast<std::uint32_t>(warnings.size()));
    for (const std::string& warning : warnings)
        PutText(frame, warning);
}

bool DecodeMeshed(std::string_view frame, const std::vector<std::vector<int>>& chunks,
                  ModelData& data, int& chunk, std::vector<std::string>& warnings) {
    Reader in(frame);
    std::int32_t number = -1;
    if (!in.Get(number) || number < 0 || static_cast<std::size_t>(number) >= chunks.size())
        return false;
    struct Placed {
        std::array<double, 16> transform;
        std::vector<MeshPart> meshes;
    };
    std::vector<Placed> placed(chunks[number].size());
    for (Placed& p : placed) {
        std::uint32_t parts = 0;
        if (!in.Get(p.transform) || !in.Get(parts) || parts > frame.size()) return false;
        p.meshes.resize(parts);
        for (MeshPart& part : p.meshes) {
            std::uint8_t coloured = 0;
            if (!in.Get(part.colour) || !in.Get(coloured) || !in.GetArray(part.points) ||
                !in.GetArray(part.faces))
                return false;
            part.coloured = coloured != 0;
        }
    }
    std::uint32_t count = 0;
    if (!in.Get(count) || count > frame.size()) return false;
    std::vector<std::string> told(count);
    for (std::string& warning : told)
        if (!in.GetText(warning)) return false;
    if (!in.AtEnd()) return false;
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const int index = chunks[number][i];
        if (index < 0 || static_cast<std::size_t>(index) >= data.products.size()) return false;
    }
    for (std::size_t i = 0; i < placed.size(); ++i) {
        ProductData& p = data.products[chunks[number][i]];
        p.transform = placed[i].transform;
        p.meshes = std::move(placed[i].meshes);
    }
    chunk = number;
    warnings.insert(warnings.end(), std::make_move_iterator(told.begin()),
                    std::make_move_iterator(told.end()));
    return true;
}

bool WriteFrame(int fd, const std::string& frame) {
    const auto size = static_cast<std::uint32_t>(frame.size());
    return WriteAll(fd, reinterpret_cast<const char*>(&size), sizeof size) &&
           WriteAll(fd, frame.data(), frame.size());
}

bool ReadFrame(int fd, std::string& frame) {
    std::uint32_t size = 0;
    if (!ReadAll(fd, reinterpret_cast<char*>(&size), sizeof size) || size > kMaxFrame) return false;
    frame.resize(size);
    return ReadAll(fd, frame.data(), size);
}

} // namespace obsidra::host::ifc
