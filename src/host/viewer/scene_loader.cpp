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
        m_result = ReadSceneFile(path, [this](double fraction) {
            // A report per whole percent, so that a fast reader does not flood the event loop.
            const int percent = static_cast<int>(fraction * 100);
            if (m_percent.exchange(percent) != percent)
                QMetaObject::invokeMethod(
                    this, [this, percent] { emit Progress(percent); }, Qt::QueuedConnection);
            return !m_cancel;
        });
    });
    m_thread->setParent(this);
    connect(m_thread, &QThread::finished, this, &SceneLoader::Finished);
    m_thread->start();
}

} // namespace obsidra::host::viewer
