#pragma once
// Every analysis engine of the program.

#include "analysis/fibonacci.h"
#include "analysis/moving_averages.h"
#include "analysis/oscillators.h"
#include "analysis/predictor.h"
#include "analysis/trend.h"
#include "analysis/two_series.h"
#include "analysis/volume.h"
