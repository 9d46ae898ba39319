// A name, a bar, a button.
#include "panel/window/render_strip.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace vitrell::panel {

RenderStrip::RenderStrip(QWidget* parent)
    : QWidget(parent), name_(new QLabel(this)), bar_(new QProgressBar(this)) {
  bar_->setAccessibleName(tr("Progress of the render"));
  auto* cancel = new QPushButton(tr("Cancel"), this);
  cancel->setAccessibleName(tr("Cancel the render"));
  connect(cancel, &QPushButton::clicked, this, [this] {
    if (IsRunning()) render_->Cancel();
  });
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(name_);
  layout->addWidget(bar_);
  layout->addWidget(cancel);
  hide();
}

void RenderStrip::Start(const std::filesystem::path& tool, const QStringList& arguments,
                        bool hasFrames, const QString& output) {
  render_ = std::make_unique<FileRender>(tool);
  name_->setText(tr("Rendering %1").arg(QFileInfo(output).fileName()));
  // How far a single picture is nobody tells.
  bar_->setRange(0, 0);
  bar_->setFormat(tr("%v of %m frames"));
  connect(render_.get(), &FileRender::Progressed, this, [this](qint64 done, qint64 all) {
    bar_->setRange(0, static_cast<int>(all));
    bar_->setValue(static_cast<int>(done));
  });
  connect(render_.get(), &FileRender::Finished, this, [this](bool done, const QString& message) {
    hide();
    Q_EMIT Finished(done, message);
  });
  show();
  render_->Start(arguments, hasFrames);
}

}  // namespace vitrell::panel
