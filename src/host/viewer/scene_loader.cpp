#include "host/viewer/scene_loader.h"

#include <QThread>

namespace obsidra::host::viewer {

SceneLoader::SceneLoader(QString path, QObject* parent)
    : QObject(parent), m_path(std::move(path)) {}

SceneLoader::~SceneLoader() {
    if (!m_thread) return;
    m_cancel = true;
    m_thread->wait();
}

void SceneLoader::Start() {
    m_thread = QThread::create([this] {
        const std::string path = m_path.toStdString();
        m_result = ReadSceneFile(
            path,
            [this](double fraction) {
                // A report per whole percent, so that a fast reader does not flood the event loop.
                const int percent = static_cast<int>(fraction * 100);
                if (m_percent.exchange(percent) != percent)
                    QMetaObject::invokeMethod(
                        this, [this, percent] { emit Progress(percent); }, Qt::QueuedConnection);
                return !m_cancel;
            },
            [this](std::unique_ptr<PreviewPart> part) {
                const std::lock_guard lock(m_previewMutex);
                m_previews.push_back(std::move(part));
                // One notice for the previews that gather while the window is busy.
                if (m_previews.size() == 1)
                    QMetaObject::invokeMethod(
                        this, [this] { emit PreviewReady(); }, Qt::QueuedConnection);
            },
            /*upright=*/true); // the file gets a segment of its own in a view whose up is +Z
    });
    m_thread->setParent(this);
    connect(m_thread, &QThread::finished, this, &SceneLoader::Finished);
    m_thread->start();
}

std::vector<std::unique_ptr<PreviewPart>> SceneLoader::TakePreviews() {
    const std::lock_guard lock(m_previewMutex);
    return std::exchange(m_previews, {});
}

} // namespace obsidra::host::viewer
