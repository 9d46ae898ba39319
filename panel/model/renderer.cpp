// Answers on their way from the worker's thread to this object's.
#include "panel/model/renderer.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

#include "panel/model/render_worker.h"

namespace vitrell::panel {

Renderer::Renderer(std::shared_ptr<const headless::EffectModule> module, QObject* parent)
    : QObject(parent), worker_(std::make_unique<RenderWorker>(std::move(module), [this] {
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
      })) {
  patience_.setSingleShot(true);
  patience_.setInterval(RenderWorker::kPatience);
  connect(&patience_, &QTimer::timeout, this, [this] {
    if (worker_->StopOutdated()) patience_.start();
  });
}

Renderer::~Renderer() = default;

std::uint64_t Renderer::Request(RenderRequest request) {
  // Not started anew by every change of a drag.
  if (!patience_.isActive()) patience_.start();
  return worker_->Put(std::move(request));
}

void Renderer::Cancel() { worker_->Cancel(); }

void Renderer::SetCacheBudget(std::int64_t bytes) { worker_->SetCacheBudget(bytes); }

bool Renderer::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  while (std::optional<RenderAnswer> answer = worker_->Take()) Q_EMIT Answered(*answer);
  return true;
}

}  // namespace vitrell::panel
