// Logging category of the recipe store ("Core.Recipes"); not installed.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcRecipes)
