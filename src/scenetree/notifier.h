#pragma once

#include <string>
#include <vector>

// Where the segment tree sends the few messages the user must see (a search that hit the depth
// limit). The browser shows each in a message box; without a window they are recorded.
class SegmentTreeNotifier {
public:
    virtual ~SegmentTreeNotifier() = default;
    virtual void ShowMessage(const char* text) = 0;
};

class RecordingNotifier : public SegmentTreeNotifier {
public:
    void ShowMessage(const char* text) override { m_messages.emplace_back(text); }
    const std::vector<std::string>& GetMessages() const { return m_messages; }
    void Clear() { m_messages.clear(); }

private:
    std::vector<std::string> m_messages;
};
