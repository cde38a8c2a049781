// Reads one scene file on a worker thread, so that the window stays responsive and the user
// can cancel. The worker touches no scene; the window writes the result on its own thread.
#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "host/viewer/scene_reader.h"

class QThread;

namespace obsidra::host::viewer {

class SceneLoader : public QObject {
    Q_OBJECT

public:
    explicit SceneLoader(QString path, QObject* parent = nullptr);
    // Cancels a read still running and waits for the worker.
    ~SceneLoader() override;

    const QString& Path() const { return m_path; }
    void Start();
    // The read stops at its next progress report; Finished follows with a cancelled result.
    void Cancel() { m_cancel = true; }
    bool CancelAsked() const { return m_cancel; }
    // The result, once Finished was emitted.
    SceneReadResult TakeResult() { return std::move(m_result); }
    // The previews read since the last call, oldest first.
    std::vector<std::unique_ptr<PreviewPart>> TakePreviews();

signals:
    void Progress(int percent);
    // A preview is ready to be taken.
    void PreviewReady();
    void Finished();

private:
    QString m_path;
    QThread* m_thread = nullptr;
    std::atomic<bool> m_cancel{false};
    std::atomic<int> m_percent{-1};
    SceneReadResult m_result;
    std::mutex m_previewMutex;
    std::vector<std::unique_ptr<PreviewPart>> m_previews;
};

} // namespace obsidra::host::viewer
