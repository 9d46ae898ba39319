// Trying, telling, asking.
#include "panel/window/window_start.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <exception>

#include "panel/model/places.h"

namespace vitrell::panel {
namespace {

// Another module; empty: none.
std::filesystem::path AskForModule(const QString& problem) {
  QMessageBox box(QMessageBox::Critical, "Vitrell", problem);
  box.setInformativeText(MainWindow::tr(
      "There are no controls without an effect. Choose another effect module, or install the "
      "program again. What the last session left is kept."));
  const QPushButton* choose =
      box.addButton(MainWindow::tr("Choose &Another Module\u2026"), QMessageBox::AcceptRole);
  box.addButton(QMessageBox::Close);
  box.exec();
  if (box.clickedButton() != choose) return {};
  return QFileDialog::getOpenFileName(nullptr, MainWindow::tr("Effect module")).toStdString();
}

}  // namespace

std::unique_ptr<MainWindow> StartWindow(WindowOrder order) {
  while (true) {
    QString problem;
    try {
      order.module = std::make_shared<const headless::EffectModule>(FindEffect(order.effect));
      return std::make_unique<MainWindow>(order);
    } catch (const std::exception& error) {
      problem = QString::fromStdString(error.what());
    }
    order.effect = AskForModule(problem);
    if (order.effect.empty()) return nullptr;
  }
}

}  // namespace vitrell::panel
