target_sources(vorlix_ui PRIVATE
  ui/login/LoginRules.cpp
  ui/login/LoginRules.h
  ui/login/LoginView.cpp
  ui/login/LoginView.h)
