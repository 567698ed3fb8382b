// Numbers of the module's resources, for the sources and for the resource script.
#pragma once

// The box in which every dialog is shown: it is empty, its controls are made when it opens.
#define IDD_KORVEL_DIALOG 1000
