// A name, a bar, a button.
#include "panel/window/render_strip.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace vitrell::panel {
namespace {

constexpr int kPerWhole = 1000;

}  // namespace

RenderStrip::RenderStrip(QWidget* parent)
    : QWidget(parent), name_(new QLabel(this)), bar_(new QProgressBar(this)) {
  bar_->setAccessibleName(tr("Progress of the render"));
  auto* cancel = new QPushButton(tr("Cancel"), this);
  cancel->setAccessibleName(tr("Cancel the render"));
  connect(cancel, &QPushButton::clicked, this, &RenderStrip::Cancel);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(name_);
  layout->addWidget(bar_);
  layout->addWidget(cancel);
  hide();
}

void RenderStrip::Cancel() {
  if (IsRunning()) render_->Cancel();
}

void RenderStrip::Start(const std::filesystem::path& tool, const QStringList& arguments,
                        const QString& output) {
  render_ = std::make_unique<FileRender>(tool);
  name_->setText(tr("Rendering %1").arg(QFileInfo(output).fileName()));
  // Busy until the first line comes.
  bar_->setRange(0, 0);
  connect(render_.get(), &FileRender::Reached, this, [this](double part) {
    bar_->setFormat(tr("%p %"));
    bar_->setRange(0, kPerWhole);
    bar_->setValue(static_cast<int>(part * kPerWhole));
  });
  connect(render_.get(), &FileRender::Progressed, this, [this](qint64 done, qint64 all) {
    bar_->setFormat(tr("%v of %m frames"));
    bar_->setRange(0, static_cast<int>(all));
    bar_->setValue(static_cast<int>(done));
  });
  connect(render_.get(), &FileRender::Finished, this, [this](bool done, const QString& message) {
    hide();
    Q_EMIT Finished(done, message);
  });
  show();
  render_->Start(arguments);
}

}  // namespace vitrell::panel
