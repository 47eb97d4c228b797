package com.korvel.k3.kxi1;

public final class Toolkit {
    public UserSession createUserSession() {
        return new UserSession();
    }
}
