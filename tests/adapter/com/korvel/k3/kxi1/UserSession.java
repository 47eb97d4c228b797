package com.korvel.k3.kxi1;

public final class UserSession {
    /** The manager may be null, as it is under a generation that lacks the entity. */
    public void addManager(Object manager) {}
}
