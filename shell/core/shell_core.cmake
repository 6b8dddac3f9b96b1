# Frame rules and the menu as data: Qt-free, tested alone.
add_library(velorin_shell_core STATIC ${CMAKE_CURRENT_LIST_DIR}/menu_def.cpp
            ${CMAKE_CURRENT_LIST_DIR}/frame_rules.cpp ${CMAKE_CURRENT_LIST_DIR}/working_blocks.cpp)
target_include_directories(velorin_shell_core PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(velorin_shell_core PUBLIC velorin_shell_base velorin_chart_model
                      velorin_market_data)
