#pragma once

#include <vector>

#include "forms/frm_alarms.h"
#include "forms/frm_main.h"
#include "forms/frm_options.h"
#include "forms/frm_save_snapshot.h"
#include "forms/frm_settings.h"

namespace tarnwell::forms {

/// All five forms, with values in their fields as a device gives them, the longest where it matters.
struct SampleForms {
  SampleForms();

  std::vector<Form*> All();

  frmMain main;
  frmSettings settings{main.lblRFLevel};
  frmAlarms alarms;
  frmOptions options;
  frmSaveSnapshot snapshot;
};

/// What can be seen of the forms together: for which device, on which page.
struct Scene {
  const char* name;
  Form* form;
  std::vector<QWidget*> hidden;
};
std::vector<Scene> Scenes(SampleForms& forms);

/// Gives the console a window of this size in pixels, the other forms the size that follows from it, and shows all.
void ShowAt(SampleForms& forms, QSize main);

/// Shows the scene's part of its form.
void ShowScene(const Scene& scene, SampleForms& forms);

}  // namespace tarnwell::forms
